#pragma once

#include <memory>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "groups/page_groups.h"
#include "window/tabs_fixture.h"

// Tabs with page groups. The server has the pages /page0 to /page199 ("Page 0" and so on) and /silent, which never
// answers.
class TGroupsFixture : public TTabsFixture {
 public:
  void Prepare() {
    TTabsFixture::Prepare();
    for (int i = 0; i < 200; ++i) server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
    server.Route("/silent", TTestResponse{.neverAnswer = true});
  }
  void Begin() {
    TTabsFixture::Begin();
    groups = std::make_unique<TPageGroups>(window.get(), *actions, *tabs, *tabMenu, *closeAll, *queue);
  }
  void End() {
    groups.reset();
    TTabsFixture::End();
    QDir(TGroupFolder::Path()).removeRecursively();
  }

  // Writes a group file of these lines; its path, or empty.
  [[nodiscard]] static QString Put(const QString &name, const QString &lines) {
    const QString path = TGroupFolder::Path() + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    const QByteArray bytes = "[HalvexGroup]\n" + lines.toUtf8() + '\n';
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
  }
  // Opens a group of these lines in the place of all tabs.
  void OpenLines(const QString &lines) { groups->OpenHalvexGroup(Put(u"g.hgp"_s, lines), true); }
  // The lines of a group file without its section.
  [[nodiscard]] static QString Lines(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll()).section(QLatin1Char('\n'), 1).trimmed();
  }
  [[nodiscard]] QString Page(int number) const { return server.Url(QStringLiteral("/page%1").arg(number)); }
  // The lines "n0" and so on for the first pages.
  [[nodiscard]] QString LinesOf(int pages) const {
    QStringList lines;
    for (int i = 0; i < pages; ++i) lines.append(QStringLiteral("n%1=%2").arg(QString::number(i), Page(i)));
    return lines.join(QLatin1Char('\n'));
  }

  std::unique_ptr<TPageGroups> groups;
};
