#include "browser/engine/start_page.h"

#include <QBuffer>
#include <QFile>
#include <QWebEngineUrlRequestJob>

#include "config/language.h"

namespace {

// The texts of the page: "{{Key}}" in the file stands for the text of that key.
constexpr TTextKey PageTexts[] = {
    {"INFO", "Locale"},           {"PAGES", "StartTitle"},  {"PAGES", "StartIntro"},      {"PAGES", "StartTabs"},
    {"PAGES", "StartTabsText"},   {"PAGES", "StartNames"},  {"PAGES", "StartNamesText"},  {"PAGES", "StartSpare"},
    {"PAGES", "StartSpareText"},  {"PAGES", "StartGroups"}, {"PAGES", "StartGroupsText"}, {"PAGES", "StartSearch"},
    {"PAGES", "StartSearchText"}, {"PAGES", "StartPopups"}, {"PAGES", "StartPopupsText"}, {"PAGES", "StartLast"},
    {"PAGES", "StartLastText"},   {"PAGES", "StartPlace"},  {"PAGES", "StartPlaceText"},  {"PAGES", "StartClosing"},
};

QByteArray FilledPage(const TLanguage &language) {
  QFile file(QStringLiteral(":/pages/start.html"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QString html = QString::fromUtf8(file.readAll());
  for (const TTextKey &text : PageTexts) {
    html.replace(QStringLiteral("{{%1}}").arg(QLatin1String(text.key)), language.Text(text).toHtmlEscaped());
  }
  return html.toUtf8();
}

}  // namespace

TStartPage::TStartPage(const TLanguage &language, QObject *parent)
    : QWebEngineUrlSchemeHandler(parent), m_language(language) {}

void TStartPage::requestStarted(QWebEngineUrlRequestJob *job) {
  if (job->requestUrl().path() != QLatin1String("start")) {
    job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    return;
  }
  auto *buffer = new QBuffer(job);
  buffer->setData(FilledPage(m_language));
  buffer->open(QIODevice::ReadOnly);
  job->reply(QByteArrayLiteral("text/html;charset=utf-8"), buffer);
}
