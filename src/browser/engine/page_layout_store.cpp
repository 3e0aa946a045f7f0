#include "browser/engine/page_layout_store.h"

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr qreal DefaultMargin = 10;
constexpr qreal MaxMargin = 500;
constexpr auto Hive = TRegistryHive::CurrentUser;

const QString Key = QString::fromLatin1(RegistryKey::PageSetup);

QString Read(const TRegistryStore &store, const char *name) {
  return store.Read(Hive, Key, QLatin1String(name)).value_or(QString());
}

qreal ReadMargin(const TRegistryStore &store, const char *name) {
  bool ok = false;
  const qreal margin = Read(store, name).toDouble(&ok);
  return ok && margin >= 0 && margin <= MaxMargin ? margin : DefaultMargin;
}

QPageSize SizeOf(const QString &name) {
  for (int id = 0; id <= int(QPageSize::LastPageSize); ++id) {
    const auto size = static_cast<QPageSize::PageSizeId>(id);
    if (size != QPageSize::Custom && QPageSize::key(size) == name) return QPageSize(size);
  }
  // A size of the user's own: "width x height" in millimetres.
  const QStringList sides = name.split(QLatin1Char('x'));
  const QSizeF custom(sides.value(0).toDouble(), sides.value(1).toDouble());
  if (sides.size() == 2 && custom.width() >= 10 && custom.height() >= 10 && custom.width() <= 5000 &&
      custom.height() <= 5000) {
    return QPageSize(custom, QPageSize::Millimeter);
  }
  return QPageSize(QPageSize::A4);
}

QString NameOf(const QPageSize &size) {
  if (size.id() != QPageSize::Custom) return QPageSize::key(size.id());
  const QSizeF sides = size.size(QPageSize::Millimeter);
  return QStringLiteral("%1x%2").arg(sides.width()).arg(sides.height());
}

}  // namespace

QPageLayout PageLayoutStore::Load(const TRegistryStore &store) {
  const QPageLayout::Orientation orientation =
      Read(store, "Orientation") == QLatin1String("Landscape") ? QPageLayout::Landscape : QPageLayout::Portrait;
  QPageLayout layout(SizeOf(Read(store, "PageSize")), orientation, QMarginsF(), QPageLayout::Millimeter);
  const QMarginsF margins(ReadMargin(store, "MarginLeft"), ReadMargin(store, "MarginTop"),
                          ReadMargin(store, "MarginRight"), ReadMargin(store, "MarginBottom"));
  const QSizeF paper = layout.fullRect(QPageLayout::Millimeter).size();
  const bool fits =
      margins.left() + margins.right() < paper.width() && margins.top() + margins.bottom() < paper.height();
  layout.setMargins(fits ? margins : QMarginsF(DefaultMargin, DefaultMargin, DefaultMargin, DefaultMargin));
  return layout;
}

void PageLayoutStore::Save(TRegistryStore &store, const QPageLayout &layout) {
  const QMarginsF margins = layout.margins(QPageLayout::Millimeter);
  const auto number = [](qreal value) { return QString::number(value, 'f', 1); };
  store.ReplaceKey(
      Hive, Key,
      {{QStringLiteral("PageSize"), NameOf(layout.pageSize())},
       {QStringLiteral("Orientation"),
        layout.orientation() == QPageLayout::Landscape ? QStringLiteral("Landscape") : QStringLiteral("Portrait")},
       {QStringLiteral("MarginLeft"), number(margins.left())},
       {QStringLiteral("MarginTop"), number(margins.top())},
       {QStringLiteral("MarginRight"), number(margins.right())},
       {QStringLiteral("MarginBottom"), number(margins.bottom())}});
}
