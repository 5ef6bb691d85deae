// The one style of the window: Fusion, without the pictures that Qt's menu bar asks for at start and that
// this window never shows. Asking for one makes Qt load every image plugin of the system. Owned by the
// application.
#pragma once

#include <QIcon>
#include <QProxyStyle>

namespace orlix {

class LeanStyle : public QProxyStyle {
    Q_OBJECT
  public:
    LeanStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    QIcon standardIcon(StandardPixmap pixmap, const QStyleOption* option,
                       const QWidget* widget) const override;
};

}  // namespace orlix
