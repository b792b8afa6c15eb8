#pragma once

/** Which kinds of records a manager has whole. Those that a load did not bring keep all edits out. */
class LoadState
{
public:
    enum Kind {
        Tags = 1,
        Groups = 2,
        Nodes = 4,
        Files = 8,
        Relations = 16,
        Trees = 32 ///< of a server
    };

    /** A load of all of them begins. */
    void begin()
    {
        m_isLoading = true;
        m_unread = all;
    }
    void end()
    {
        m_isLoading = false;
        m_wasLoaded = true;
    }
    /** It could not begin: what an earlier one has brought is whole still. */
    void fail() { m_unread = m_wasLoaded ? m_unread : all; }
    void note(Kind kind, bool isRead) { m_unread = isRead ? m_unread & ~kind : m_unread | kind; }

    bool isLoading() const { return m_isLoading; }
    /** What was stored already is being taken in, a little at a time: no edit may come in between. */
    void setMerging(bool isMerging) { m_isMerging = isMerging; }
    bool isMerging() const { return m_isMerging; }
    bool isUnsettled() const { return m_isLoading || m_isMerging; }
    bool isWhole() const { return m_unread == 0; }

private:
    static constexpr int all = Tags | Groups | Nodes | Files | Relations;

    int m_unread = 0; ///< nothing was asked for yet, so nothing is missing
    bool m_isLoading = false;
    bool m_isMerging = false;
    bool m_wasLoaded = false;
};
