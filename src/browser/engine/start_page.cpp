#include "browser/engine/start_page.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QWebEngineUrlRequestJob>
#include <span>

#include "browser/engine/policy.h"
#include "config/language.h"

namespace {

// The texts of the pages: "{{Key}}" in the file stands for the text of that key.
constexpr TTextKey StartTexts[] = {
    {"PAGES", "StartTitle"},  {"PAGES", "StartIntro"},      {"PAGES", "StartTabs"},    {"PAGES", "StartTabsText"},
    {"PAGES", "StartNames"},  {"PAGES", "StartNamesText"},  {"PAGES", "StartSpare"},   {"PAGES", "StartSpareText"},
    {"PAGES", "StartGroups"}, {"PAGES", "StartGroupsText"}, {"PAGES", "StartSearch"},  {"PAGES", "StartSearchText"},
    {"PAGES", "StartPopups"}, {"PAGES", "StartPopupsText"}, {"PAGES", "StartLast"},    {"PAGES", "StartLastText"},
    {"PAGES", "StartPlace"},  {"PAGES", "StartPlaceText"},  {"PAGES", "StartClosing"},
};
constexpr TTextKey SearchTexts[] = {{"PAGES", "PanelTitle"},
                                    {"PAGES", "PanelWords"},
                                    {"PAGES", "PanelNone"},
                                    {"PAGES", "PanelSetUp"},
                                    {"PAGES", "PanelPages"}};

// Pages are told "light" whatever the desktop says (engine 6.4), so that this one gets it from the program's palette.
bool IsDark() {
  const QPalette palette = QGuiApplication::palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

void Fill(QString &html, const char *place, const QString &text) {
  html.replace(QStringLiteral("{{%1}}").arg(QLatin1String(place)), text.toHtmlEscaped());
}

QString FilledPage(const char *name, const TLanguage &language, std::span<const TTextKey> texts) {
  QFile file(QStringLiteral(":/pages/") + QLatin1String(name));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QString html = QString::fromUtf8(file.readAll());
  const auto fill = [&html](const char *place, const QString &text) { Fill(html, place, text); };
  fill("Language", language.LocaleName().replace(u'_', u'-'));
  fill("Direction", language.Direction() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr"));
  fill("Scheme", IsDark() ? QStringLiteral("dark") : QStringLiteral("light"));
  for (const TTextKey &text : texts) fill(text.key, language.Text(text));
  return html;
}

}  // namespace

TStartPage::TStartPage(const TLanguage &language, std::function<TWordSearch(const QString &words)> searchFor,
                       QObject *parent)
    : QWebEngineUrlSchemeHandler(parent), m_language(language), m_searchFor(std::move(searchFor)) {}

QByteArray TStartPage::SearchPage() const {
  QString html = FilledPage("search.html", m_language, SearchTexts);
  // Which search it will be does not depend on the words.
  const TWordSearch search = m_searchFor(QStringLiteral("zarvela"));
  Fill(html, "State", search.address.isEmpty() ? QStringLiteral("none") : QStringLiteral("ready"));
  Fill(html, "PanelGo", m_language.Text("PAGES", "SearchInstead").arg(search.name));
  return html.toUtf8();
}

void TStartPage::requestStarted(QWebEngineUrlRequestJob *job) {
  const bool isOwn = job->requestUrl().scheme() == QLatin1String(Scheme);
  const QString path = isOwn ? job->requestUrl().path() : QString();
  QByteArray page;
  if (path == QLatin1String("start")) page = FilledPage("start.html", m_language, StartTexts).toUtf8();
  if (path == QLatin1String("search")) page = SearchPage();
  if (page.isEmpty()) return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
  auto *buffer = new QBuffer(job);
  buffer->setData(page);
  buffer->open(QIODevice::ReadOnly);
  job->reply(QByteArrayLiteral("text/html;charset=utf-8"), buffer);
}
