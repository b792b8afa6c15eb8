#include "db/manager/editrunner.h"

#include "core/providers/browstreeprovider.h"
#include "core/providers/groupsprovider.h"
#include "core/providers/mainviewprovider.h"
#include "core/providers/relationtreeprovider.h"
#include "core/providers/tagsprovider.h"
#include "db/manager/errorteller.h"
#include "db/manager/recordloads.h"

namespace {
/** How often an edit begins anew when others come in between. */
constexpr int mostTries = 3;
} // namespace

QVector<BaseDBProvider *> EditRunner::editors() const
{
    // In the order in which their news go out: all others may name a tag.
    return {m_providers.tags,     m_providers.groups,       m_providers.browsTree,
            m_providers.mainView, m_providers.relationTree, m_rows};
}

EditResult EditRunner::run(int reload, const EditBase &base, const std::function<EditResult()> &edit)
{
    EditResult result;
    bool wasBusy = false;
    EditRunHost::EditEnd end = EditRunHost::Again;
    m_host.editBegins();
    for (int i = 0; i < mostTries && end == EditRunHost::Again; ++i) {
        if (!m_host.beginEdit(base)) {
            m_host.editEnded({});
            return {};
        }
        wasBusy = m_errors.runInSilence([&] {
            m_record.begin();
            result = edit();
            if (result.isDone)
                m_record.finish();
            end = m_host.endEdit(result.isDone);
            result.isDone = end == EditRunHost::Ended;
            if (result.isDone)
                tell(result);
        });
    }
    // Another connection may have taken the database between the edit and the reading of what it made.
    if ((wasBusy && !result.isDone) || end == EditRunHost::Again)
        m_errors.warnOfBusyDatabase();
    else if (wasBusy)
        m_loads.keep(reload, result.reloadIds);
    m_host.refreshModificationDate();
    m_host.editEnded(result.isDone ? m_record.take() : EditStep());
    return result;
}

void EditRunner::tell(const EditResult &result)
{
    if (result.tell)
        result.tell();
    const QVector<BaseDBProvider *> providers = editors();
    for (BaseDBProvider *provider : providers)
        provider->tellNews();
    m_host.toldEdit();
}
