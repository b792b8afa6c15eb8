#pragma once

/** Who decides, for a model or a view, whether the open database can be edited. GUI thread. */
class EditHost
{
public:
    virtual ~EditHost() = default;

    virtual bool isReadOnly() const = 0;
    /** True when an edit may go on; otherwise the user has been told why not. */
    virtual bool mayEdit() = 0;
};

/** False without a host, too: a view has none while no database is open. */
inline bool mayEdit(EditHost *host)
{
    return host && host->mayEdit();
}
