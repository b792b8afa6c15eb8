#pragma once

#include "core/records/file.h"
#include "models/contents/sorter.h"
#include "tests/support/localcollection.h"
#include "ui/preview/filepreview.h"
#include "ui/preview/previewbox.h"
#include "ui/preview/previews.h"

/** A test of the previewer, on a new database to which it adds pictures. */
class PreviewTest : public QObject
{
protected:
    void openDatabase()
    {
        m_fixture = std::make_unique<LocalCollection>();
        m_previews = std::make_unique<Previews>(nullptr);
        LocalCollection::set("PreferencesDialog/autoSaveRotated", false);
    }
    void closeDatabase()
    {
        m_previews.reset();
        m_fixture.reset();
    }

    enum Order { Unsorted, ContentsOrder };

    static QImage picture()
    {
        QImage image(60, 40, QImage::Format_RGB32);
        image.fill(Qt::white);
        image.setPixelColor(3, 5, Qt::red);
        return image;
    }
    qint64 addPicture(const QString &name, bool isInternal = true, const QImage &image = picture())
    {
        LocalCollection::set("MainWindow/linkToFiles", !isInternal);
        LocalCollection::set("PreferencesDialog/duplicateManagementEnabled", false);
        image.save(m_fixture->filePath(name));
        return m_fixture->add(QUrl::fromLocalFile(m_fixture->filePath(name)));
    }
    PreviewBox *open(qint64 id, Order order = Unsorted)
    {
        m_fixture->mainView().showSpecialNode(AllFiles);
        m_fixture->mainView().sorter()->sort(order == ContentsOrder ? 1 : -1);
        m_previews->open(id, &m_fixture->mainView());
        for (QWidget *window : QApplication::topLevelWidgets()) {
            auto *box = qobject_cast<PreviewBox *>(window);
            if (box && box->isVisible() && box->fileId() == id)
                return isSettled(box) ? box : nullptr;
        }
        return nullptr;
    }
    /** Waits until the picture, or the word that there is none, is on show. */
    static bool isSettled(PreviewBox *box)
    {
        return QTest::qWaitFor(
            [box] { return preview(box)->hasPicture() || !preview(box)->text().isEmpty(); });
    }
    static FilePreview *preview(PreviewBox *box) { return box->findChild<FilePreview *>(); }

    std::unique_ptr<LocalCollection> m_fixture;
    std::unique_ptr<Previews> m_previews;
};
