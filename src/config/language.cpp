#include "config/language.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QSet>
#include <QTranslator>

#include "config/form_translator.h"
#include "config/options.h"
#include "platform/program_folders.h"

namespace {

constexpr const char *ToolkitTranslations[] = {"qtbase", "qtwebengine"};

// The names of keys. The toolkit's own differ from what stands on keyboards, and from the names in our texts.
class TKeyNames final : public QTranslator {
 public:
  TKeyNames(const TIniFile &texts, QObject *owner) : QTranslator(owner) {
    for (const auto &[key, name] : texts.Pairs("KEYS")) m_names.insert(key, name);
  }
  [[nodiscard]] bool isEmpty() const override { return m_names.isEmpty(); }
  [[nodiscard]] QString translate(const char *context, const char *text, const char *, int) const override {
    return qstrcmp(context, "QShortcut") == 0 ? m_names.value(QLatin1String(text)) : QString();
  }

 private:
  QHash<QString, QString> m_names;
};

}  // namespace

void TLanguage::Load(TZVOptions &options) {
  const QString name = options.Get(Setting::LanguageFile);
  const QString path = ProgramFolders::Find(Folder, name);
  m_unreadFile.clear();
  if (LoadFile(path)) return;
  if (!path.isEmpty()) {
    m_unreadFile = name;
  } else if (name != DefaultFile) {
    options.Set(Setting::LanguageFile, DefaultFile);
  }
  LoadFile(ProgramFolders::Find(Folder, DefaultFile));
  m_fileName = DefaultFile;
}

bool TLanguage::LoadFile(const QString &path) {
  m_fileName = QFileInfo(path).fileName();
  m_texts = TIniFile();
  return !path.isEmpty() && m_texts.Load(path);
}

QString TLanguage::LocaleName() const {
  return m_texts.Value("INFO", "Locale");
}

Qt::LayoutDirection TLanguage::Direction() const {
  return m_texts.Value("INFO", "Direction") == u"rtl" ? Qt::RightToLeft : Qt::LeftToRight;
}

void TLanguage::InstallToolkitTranslations(QObject *owner) const {
  const QString locale = LocaleName();
  // It becomes part of a file name.
  const auto isNamePart = [](QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'-'; };
  if (!locale.isEmpty() && std::all_of(locale.begin(), locale.end(), isNamePart)) {
    for (const char *library : ToolkitTranslations) {
      auto translator = std::make_unique<QTranslator>(owner);
      if (!translator->load(QString(library) + u'_' + locale, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        continue;
      }
      QCoreApplication::installTranslator(translator.release());
    }
  }
  QCoreApplication::installTranslator(new TKeyNames(m_texts, owner));
}

QString TLanguage::Text(const char *section, const char *key) const {
  const QString text = m_texts.Value(section, key);
  if (!text.isNull() || m_texts.HasKey(section, key)) return text;
  return QString("UNDEFINED: %1 > %2").arg(QString(section), QString(key));
}

QString TLanguage::ShortHint(const QString &hint) {
  return hint.section(u'|', 0, 0);
}

QString TLanguage::LongHint(const QString &hint) {
  const qsizetype bar = hint.indexOf(u'|');
  return bar < 0 ? hint : hint.sliced(bar + 1);
}

void TLanguage::TranslateForm(QObject *form, const char *section) const {
  if (form != nullptr) TFormTranslator(m_texts, section).Translate(form);
}

QList<TLanguageFile> TLanguage::Available() {
  QList<TLanguageFile> available;
  QSet<QString> names;
  for (const QString &folder : ProgramFolders::SearchPath(Folder)) {
    QDirIterator files(folder, {"*.ini"}, QDir::Files);
    while (files.hasNext()) {
      const QString path = files.next();
      const QString name = files.fileName();
      if (names.contains(name)) continue;
      names.insert(name);
      TIniFile file;
      file.Load(path);
      available.append({path, name, file.Value("INFO", "Language")});
    }
  }
  return available;
}
