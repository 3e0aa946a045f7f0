#include "browser/engine/start_page.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPalette>
#include <QWebEngineUrlRequestJob>

#include "config/language.h"

namespace {

// The texts of the page: "{{Key}}" in the file stands for the text of that key.
constexpr TTextKey PageTexts[] = {
    {"PAGES", "StartTitle"},  {"PAGES", "StartIntro"},      {"PAGES", "StartTabs"},    {"PAGES", "StartTabsText"},
    {"PAGES", "StartNames"},  {"PAGES", "StartNamesText"},  {"PAGES", "StartSpare"},   {"PAGES", "StartSpareText"},
    {"PAGES", "StartGroups"}, {"PAGES", "StartGroupsText"}, {"PAGES", "StartSearch"},  {"PAGES", "StartSearchText"},
    {"PAGES", "StartPopups"}, {"PAGES", "StartPopupsText"}, {"PAGES", "StartLast"},    {"PAGES", "StartLastText"},
    {"PAGES", "StartPlace"},  {"PAGES", "StartPlaceText"},  {"PAGES", "StartClosing"},
};

// Pages are told "light" whatever the desktop says (engine 6.4), so that this one gets it from the program's palette.
bool IsDark() {
  const QPalette palette = QGuiApplication::palette();
  return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QByteArray FilledPage(const TLanguage &language) {
  QFile file(QStringLiteral(":/pages/start.html"));
  if (!file.open(QIODevice::ReadOnly)) return {};
  QString html = QString::fromUtf8(file.readAll());
  const auto fill = [&html](const char *place, const QString &text) {
    html.replace(QStringLiteral("{{%1}}").arg(QLatin1String(place)), text.toHtmlEscaped());
  };
  fill("Language", language.LocaleName().replace(u'_', u'-'));
  fill("Direction", language.Direction() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr"));
  fill("Scheme", IsDark() ? QStringLiteral("dark") : QStringLiteral("light"));
  for (const TTextKey &text : PageTexts) fill(text.key, language.Text(text));
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
