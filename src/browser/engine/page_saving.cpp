#include "browser/engine/page_saving.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QWebEnginePage>

#include "browser/downloads/file_names.h"
#include "browser/engine/own_scripts.h"
#include "config/language.h"

namespace {

using TFormat = QWebEngineDownloadRequest::SavePageFormat;

struct TSaveFormat {
  TFormat format;
  const char *suffix;
  TTextKey filter;
};

constexpr std::array SaveFormats{
    TSaveFormat{TFormat::CompleteHtmlSaveFormat, "html", {"SAVE_AS", "CompletePage"}},
    TSaveFormat{TFormat::MimeHtmlSaveFormat, "mhtml", {"SAVE_AS", "SingleFile"}},
    TSaveFormat{TFormat::SingleHtmlSaveFormat, "html", {"SAVE_AS", "HtmlOnly"}},
};

constexpr std::array HtmlTypes{"text/html", "application/xhtml+xml"};

// A clash with another program's file of the same name is as good as impossible, but must not go on for ever.
constexpr int MaxTries = 20;

void ChooseFile(QWebEnginePage *page, QWidget *owner, const TLanguage &language) {
  auto *dialog = new QFileDialog(owner->window(), language.Text("SAVE_AS", "Title"),
                                 QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
  dialog->setObjectName(QStringLiteral("dlgSaveAs"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  QStringList filters;
  for (const TSaveFormat &format : SaveFormats) filters.append(language.Text(format.filter));
  dialog->setNameFilters(filters);
  const auto chosen = [dialog, filters] {
    return SaveFormats.at(std::max<qsizetype>(0, filters.indexOf(dialog->selectedNameFilter())));
  };
  const auto takeSuffix = [dialog, chosen] { dialog->setDefaultSuffix(QLatin1String(chosen().suffix)); };
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog, takeSuffix);
  takeSuffix();
  dialog->selectFile(PageSaving::FileNameOf(page->title(), language) + QStringLiteral(".html"));
  QObject::connect(dialog, &QFileDialog::fileSelected, page,
                   [page, chosen](const QString &path) { page->save(path, chosen().format); });
  dialog->open();
}

}  // namespace

void PageSaving::SaveAs(QWebEnginePage *page, QWidget *owner, const TLanguage &language) {
  const QPointer<QWebEnginePage> guardedPage(page);
  const QPointer<QWidget> guardedOwner(owner);
  const auto go = [guardedPage, guardedOwner, &language](const QVariant &answer) {
    if (!guardedPage || !guardedOwner) return;
    const QString type = answer.toString();
    const bool html = type.isEmpty() || std::any_of(HtmlTypes.begin(), HtmlTypes.end(),
                                                    [&](const char *known) { return type == QLatin1String(known); });
    if (html) {
      ChooseFile(guardedPage, guardedOwner, language);
    } else {
      guardedPage->download(guardedPage->url());
    }
  };
  page->runJavaScript(QStringLiteral("document.contentType"), ScriptWorld::Own, go);
}

QString PageSaving::FileNameOf(const QString &title, const TLanguage &language) {
  QString name = title;
  name.replace(QLatin1Char('/'), QLatin1Char('-')).replace(QLatin1Char('\\'), QLatin1Char('-'));
  return FileNames::Safe(name, language.Text("SAVE_AS", "Untitled"));
}

QString PageSaving::InsertBase(const QString &html, const QString &address) {
  const QString base = QStringLiteral("<BASE HREF=\"%1\">").arg(address.toHtmlEscaped());
  qsizetype at = 0;
  while ((at = html.indexOf(QLatin1Char('<'), at)) >= 0) {
    const QStringView rest = QStringView(html).mid(at);
    if (rest.startsWith(QLatin1String("<!--"))) {
      const qsizetype end = html.indexOf(QLatin1String("-->"), at + 4);
      if (end < 0) break;
      at = end + 3;
      continue;
    }
    const bool head = rest.startsWith(QLatin1String("<head"), Qt::CaseInsensitive) &&
                      (rest.size() > 5 && (rest.at(5).isSpace() || rest.at(5) == QLatin1Char('>')));
    if (!head) {
      ++at;
      continue;
    }
    QChar quote;
    for (qsizetype i = at + 5; i < html.size(); ++i) {
      const QChar c = html.at(i);
      if (!quote.isNull()) {
        if (c == quote) quote = QChar();
      } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
        quote = c;
      } else if (c == QLatin1Char('>')) {
        return html.left(i + 1) + base + html.mid(i + 1);
      }
    }
    break;
  }
  return base + html;
}

QString PageSaving::WriteTemporary(const QString &html) {
  QTemporaryFile file(QDir::tempPath() + QStringLiteral("/zvXXXXXX.tmp"));
  for (int i = 0; i < MaxTries; ++i) {
    if (!file.open()) return {};
    const QString path = file.fileName().chopped(3) + QStringLiteral("htm");
    // The mark says UTF-8 to every reader, whatever the page's own declaration says.
    QByteArray bytes = html.toUtf8();
    if (std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) > 127; })) {
      bytes.prepend("\xEF\xBB\xBF");
    }
    if (file.write(bytes) != bytes.size() || !file.flush()) return {};
    // Renaming never replaces a file that is there.
    if (file.rename(path)) {
      file.setAutoRemove(false);
      return path;
    }
    file.remove();
    file.setFileTemplate(QDir::tempPath() + QStringLiteral("/zvXXXXXX.tmp"));
  }
  return {};
}
