// A window from which the paths given as arguments can be dragged, as from a file manager.

#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace {

class DragSource : public QLabel
{
public:
    explicit DragSource(const QList<QUrl> &urls) : QLabel(QStringLiteral("drag me")), m_urls(urls)
    {
        setAlignment(Qt::AlignCenter);
        setWindowTitle(QStringLiteral("Drag source"));
        setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
        setGeometry(1100, 640, 120, 60);
    }

protected:
    void mousePressEvent(QMouseEvent *) override {}
    void mouseMoveEvent(QMouseEvent *) override
    {
        auto *mime = new QMimeData;
        mime->setUrls(m_urls);
        auto *drag = new QDrag(this);
        drag->setMimeData(mime);
        drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
    }

private:
    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QList<QUrl> urls;
    for (const QString &argument : QCoreApplication::arguments().mid(1)) {
        const bool isAddress = argument.contains(QLatin1String("://"));
        urls.append(isAddress ? QUrl(argument) : QUrl::fromLocalFile(argument));
    }
    DragSource source(urls);
    source.show();
    return QApplication::exec();
}
