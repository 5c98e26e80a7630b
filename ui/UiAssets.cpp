#include "ui/UiAssets.h"

#include "ui/UiText.h"

#include <QPainter>
#include <QSvgRenderer>

// The resources live in a static library: register them explicitly, or the linker may drop them.
static void initUiResources() {
    Q_INIT_RESOURCE(pluvarine_ui);
}

namespace pluvarine {

QImage assetImage(const QString& name, QSize size) {
    static const bool registered = (initUiResources(), true);
    (void)registered;
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/pluvarine/") + name);
    if (renderer.isValid()) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(QPointF(0, 0), QSizeF(size)));
    }
    return image.convertToFormat(QImage::Format_ARGB32);
}

QPixmap assetPixmap(const QString& name, QSize size) {
    return QPixmap::fromImage(assetImage(name, size));
}

QIcon windowIconAsset() {
    QIcon icon;
    icon.addPixmap(assetPixmap(QStringLiteral("icon.svg"), QSize(48, 48)));
    return icon;
}

QFont windowFont() {
    QFont font;
    // Narrow faces with a short line height first, as the fixed layout was made for such a font.
    font.setFamilies({QStringLiteral("Tahoma"), QStringLiteral("DejaVu Sans Condensed"),
                      QStringLiteral("DejaVu Sans"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("Arial")});
    font.setPixelSize(11);
    return font;
}

} // namespace pluvarine
