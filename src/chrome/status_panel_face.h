#pragma once

class QIcon;
class QSize;
class QString;
class QWidget;

// The face of a panel of the status bar: a picture in its corner and words beside it, cut where there is no room.
namespace StatusPanelFace {

[[nodiscard]] QSize Size(const QWidget &panel, const QString &text);
void Paint(QWidget &panel, const QIcon &icon, const QString &text);

}  // namespace StatusPanelFace
