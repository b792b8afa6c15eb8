#include "ui/views/thumbnailsize.h"

#include "app/settings/windowsettings.h"
#include "ui/views/fileviews.h"
#include "ui/widgets/mainui.h"

#include <QSlider>
#include <QStatusBar>

namespace {
constexpr int step = 16;
constexpr int sliderWidth = 110;
} // namespace

ThumbnailSize::ThumbnailSize(FileViews *views, QObject *parent) : QObject(parent), m_views(views)
{
    m_views->setThumbnailSide(WindowSettings::thumbnailSide());
}

void ThumbnailSize::takePlace(MainUi &ui)
{
    m_slider = new QSlider(Qt::Horizontal);
    m_slider->setObjectName(QStringLiteral("thumbnailSlider"));
    m_slider->setToolTip(tr("Size of the thumbnails"));
    m_slider->setAccessibleName(m_slider->toolTip());
    m_slider->setFixedWidth(sliderWidth);
    m_slider->setRange(WindowSettings::smallestThumbnail, WindowSettings::largestThumbnail);
    m_slider->setSingleStep(step);
    m_slider->setPageStep(2 * step);
    m_slider->setValue(WindowSettings::thumbnailSide());
    ui.statusBar->addPermanentWidget(m_slider);
    connect(m_slider, &QSlider::valueChanged, this, [this](int side) {
        m_views->setThumbnailSide(side);
        WindowSettings::setThumbnailSide(side);
    });
}

void ThumbnailSize::setOffered(bool isOffered)
{
    if (m_slider)
        m_slider->setVisible(isOffered);
}
