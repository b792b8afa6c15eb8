#pragma once

#include "core/records/file.h"
#include "models/contents/sorter.h"
#include "tests/support/localcollection.h"
#include "ui/preview/filepreview.h"
#include "ui/preview/previewbox.h"
#include "ui/preview/previews.h"

/** A previewer on a real local database, to which pictures are added. */
class PreviewFixture
{
public:
    enum Order { Unsorted, ContentsOrder };

    ~PreviewFixture() { previews.reset(); }

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
        image.save(collection.filePath(name));
        return collection.add(QUrl::fromLocalFile(collection.filePath(name)));
    }
    PreviewBox *open(qint64 id, Order order = Unsorted)
    {
        collection.mainView().showSpecialNode(AllFiles);
        collection.mainView().sorter()->sort(order == ContentsOrder ? 1 : -1);
        previews->open(id, &collection.mainView());
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

    LocalCollection collection;
    std::unique_ptr<Previews> previews = std::make_unique<Previews>(nullptr);
};
