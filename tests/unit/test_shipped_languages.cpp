#include <QDirIterator>
#include <QLocale>
#include <QRegularExpression>
#include <QtTest>

#include "actions/command_table.h"
#include "config/language.h"
#include "store/ini_file.h"
#include "support/shipped_files.h"

// Every text that the sources ask for must be in every shipped language file, and every file must fit the English one.

namespace {

constexpr const char *English = "zveng.ini";

// Keys that user-made language files have had from the first version on, section by section; they must stay.
// clang-format off
constexpr struct {
  const char *section;
  const char *keys;
} FixedKeys[] = {
    {"GLOBAL",
     "Blank HalvexGroup HalvexGroupDuplicate ChangeRestart ClearAddressHistory ClearAddressHistoryNote "
     "ClearGlobalHistory Customize EmptyFolder IEVersion Insert Links Loading No NoItems OK OnlyInIE5 "
     "OpenAllFavorites PopupHalvex PopupHalvexUrl PopupNotifyCaption PopupNotifyDontAsk "
     "PopupNotifyMessage RenameHalvexGroup StickyNameClear StickyNamePrompt StickyNameSet StickyNameTitle "
     "Update VersionNotifyCaption VersionNotifyLabel VersionNotifyPrompt Yes NewItem StartupHalvexGroup"},
    {"MAIN",
     "HalvexGroupFilter CustomizeLinks CustomizeLinksHint Encryption128Bit Encryption40Bit "
     "Encryption56Bit EncryptionFortezza EncryptionMixed EncryptionUnknown FontSizeHint MailReadHint "
     "MenuEditFindHint MenuFavoritesAddHint MenuFileNewHint MenuFileOpenHint MenuFilePrintHint "
     "MenuFileSaveAsHint MenuGoBackHint MenuGoForwardHint MenuGoHomeHint MenuGoSearchHint "
     "MenuOptionsLoadImagesHint MenuToolsClearAddressesHint MenuViewHalvexBarHint MenuViewFullscreenHint "
     "MenuViewRefreshAllHint MenuViewRefreshHint MenuViewSourceHint MenuViewStopAllHint MenuViewStopHint "
     "SecurityActiveX SecurityAdd SecurityAddHint SecurityAllow SecurityCookies SecurityCurrentZone "
     "SecurityDisallow SecurityHint SecurityQuery SecurityRemove SecurityRemoveHint SecurityScripting "
     "SecuritySessionCookies SideSearchFavsPrompt TrayMinimize TrayRestore"},
    {"CONFIRM", "CloseAll CloseAllPrompt DontAsk Proceed ShutDown ShutDownPrompt"},
    {"OPTIONS",
     "FlyswatDisableNote NewFromAddress NewFromFavorites NewFromHistory NewFromLinks NewFromQuickSearch "
     "NewFromSearch"},
    {"Default", "NotCurrent AskDefault AlwaysAsk"},
    {"SEARCH_ENGINE", "OrganizeSearchBar OrganizeSearchEngines"},
    {"QUICK_SEARCH", "OrganizeQuickSearch"},
    {"CUSTOMIZE_TOOLBAR", "Separator"},
    {"FAVORITES_POPUP", "ShowFavoritesHint"},
    {"HalvexGroups", "HalvexGroup"},
};
// clang-format on

// One text that something asks for: its section and key, and where.
struct TUse {
  QString section;
  QString key;
  QString place;
};

QString Contents(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList Sources(const QStringList &patterns) {
  QStringList files;
  QDirIterator walk(SourceFile("src"), patterns, QDir::Files, QDirIterator::Subdirectories);
  while (walk.hasNext()) files.append(walk.next());
  files.sort();
  return files;
}

// Program text without comments; string literals are left as they are.
QString WithoutComments(QString code) {
  static const QRegularExpression pattern(R"(("(?:\\.|[^"\\\n])*")|//[^\n]*|/\*.*?\*/)",
                                          QRegularExpression::DotMatchesEverythingOption);
  return code.replace(pattern, R"(\1)");
}

QString ShortName(const QString &path) {
  return path.mid(SourceFile({}).size());
}

QString Listed(const QStringList &problems) {
  return u'\n' + problems.join(u'\n');
}

// The section that each .ui file is translated with, by its base name.
QHash<QString, QString> FormSections() {
  static const QRegularExpression include(R"re(#include\s+"(?:[\w/]*/)?ui_(\w+)\.h")re");
  static const QRegularExpression translate(R"re(TranslateForm\(\s*[^,()]+,\s*"(\w+)"\s*\))re");
  QHash<QString, QString> sections;
  for (const QString &path : Sources({"*.cpp"})) {
    const QString code = Contents(path);
    const QString section = translate.match(WithoutComments(code)).captured(1);
    if (section.isEmpty()) continue;
    for (auto match = include.globalMatch(code); match.hasNext();) sections.insert(match.next().captured(1), section);
  }
  return sections;
}

QList<TUse> UsesInForms(QStringList &problems) {
  static const QRegularExpression marked(R"re(>(~~|__)(\w+)</string>)re");
  const QHash<QString, QString> sections = FormSections();
  QList<TUse> uses;
  for (const QString &path : Sources({"*.ui"})) {
    const QString section = sections.value(QFileInfo(path).completeBaseName());
    const QString form = Contents(path);
    for (auto matches = marked.globalMatch(form); matches.hasNext();) {
      const QRegularExpressionMatch match = matches.next();
      if (section.isEmpty() && match.captured(1) == "__") problems.append(ShortName(path) + ": is not translated");
      uses.append({match.captured(1) == "~~" ? "GLOBAL" : section, match.captured(2), ShortName(path)});
    }
  }
  return uses;
}

QList<TUse> UsesInCode(QStringList &problems) {
  static const QRegularExpression forms[] = {
      QRegularExpression(R"re(\bText\(\s*"(?<section>[^"]+)"\s*,\s*"(?<key>[^"]+)"\s*\))re"),
      QRegularExpression(R"re(\bGlobal\(\s*"(?<key>[^"]+)"\s*\))re"),
      QRegularExpression(R"re(\{\s*"(?<section>[^"]+)"\s*,\s*"(?<key>[^"]+)"\s*\})re"),
      // Markers that code puts into a component before it translates it.
      QRegularExpression("\"~~(?<key>\\w+)\""),
      QRegularExpression("\"(?<form>__)(?<key>[A-Z]\\w+)\""),
      // The hints in the table of commands.
      QRegularExpression("\\b(?<form>Hint|Check)\\(\"(?<key>\\w+)\"\\)"),
  };
  static const QRegularExpression translate(R"re(TranslateForm\(\s*[^,()]+,\s*"(\w+)"\s*\))re");
  // Keys that are no literals could not be found here, nor be missed when they are absent.
  static const QRegularExpression computed(
      R"re([Ll]anguage(?:\(\))?(?:\.|->)(?:Text\(\s*"[^"]*"\s*,|Global\()\s*[^"\s])re");
  QSet<QString> sections;
  for (const auto &fixed : FixedKeys) sections.insert(fixed.section);
  TIniFile english;
  english.Load(SourceFile(QStringLiteral("Languages/") + English));
  for (const QString &section : english.Sections()) sections.insert(section);

  QList<TUse> uses;
  for (const QString &path : Sources({"*.cpp", "*.h"})) {
    const QString code = WithoutComments(Contents(path));
    QString formSection = translate.match(code).captured(1);
    if (path.endsWith("actions/command_table.cpp")) formSection = CommandSection;
    for (const QRegularExpression &form : forms) {
      for (auto matches = form.globalMatch(code); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const bool isPair = form.pattern().startsWith(R"(\{)");
        QString section = form.namedCaptureGroups().contains("section") ? match.captured("section") : "GLOBAL";
        // Pairs of strings are many things; they name a text when the first is a section.
        if (isPair && !sections.contains(section)) continue;
        if (form.namedCaptureGroups().contains("form")) section = formSection;
        if (!section.isEmpty()) uses.append({section, match.captured("key"), ShortName(path)});
      }
    }
    if (!path.endsWith("config/language.h") && computed.match(code).hasMatch()) {
      problems.append(ShortName(path) + ": " + computed.match(code).captured() + "... has a key that is no literal");
    }
  }
  return uses;
}

QStringList AllKeys(const TIniFile &file) {
  QStringList keys;
  for (const QString &section : file.Sections()) {
    for (const auto &[key, value] : file.Pairs(section)) keys.append(section + " > " + key);
  }
  return keys;
}

// What a text must have in common with its English original: the places to fill, and a hint's two parts.
QStringList Shape(const QString &text) {
  static const QRegularExpression placeholder("%(?:L?[1-9][0-9]?|[sdn%])|\\||\\(\\*\\.\\w+\\)");
  QStringList parts;
  for (auto matches = placeholder.globalMatch(text); matches.hasNext();) parts.append(matches.next().captured());
  parts.sort();
  return parts;
}

// Signs of one kind throughout: French has a no-break space inside its quotes and before these signs.
const std::pair<QString, QRegularExpression> WrongSigns[] = {
    {"fr", QRegularExpression(" [:;!?»]|« |\u202f|[“”]")},
    {"es", QRegularExpression("[“”]")},
    {"de", QRegularExpression("[”«»]")},
};

}  // namespace

class TTestShippedLanguages final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_english.Load(SourceFile(QStringLiteral("Languages/") + English)));
    m_uses = UsesInForms(m_problems) + UsesInCode(m_problems);
  }

  void SourcesAskInWaysThatAreFound() { QVERIFY2(m_problems.isEmpty(), qPrintable(Listed(m_problems))); }

  // Guards the scan itself: were its patterns wrong, it would find nothing and nothing would ever be missing.
  void TheScanFindsTexts() {
    const auto isUsed = [this](const char *section, const char *key) {
      return std::ranges::any_of(m_uses, [&](const TUse &use) { return use.section == section && use.key == key; });
    };
    QVERIFY(isUsed("GLOBAL", "ChangeRestart"));
    QVERIFY(isUsed("GLOBAL", "OK"));
    QVERIFY(isUsed("MAIN", "NewTab") && isUsed("MAIN", "MenuViewRefreshAllHint"));
    QCOMPARE(WithoutComments("a(\"http://x\"); // Text(\"A\", \"B\")\n/* c\n*/b"), "a(\"http://x\"); \nb");
  }

  void FilesAreComplete_data() {
    QTest::addColumn<QString>("path");
    const QDir folder(SourceFile("Languages"));
    for (const QString &name : folder.entryList({"*.ini"}, QDir::Files)) {
      QTest::newRow(qPrintable(name)) << folder.filePath(name);
    }
  }
  void FilesAreComplete() {
    QFETCH(QString, path);
    TIniFile file;
    QVERIFY(file.Load(path));
    QVERIFY2(Contents(path).toUtf8() == file.ToBytes(), "not valid UTF-8");
    QStringList problems;

    for (const TUse &use : m_uses) {
      if (file.Value(use.section, use.key).isEmpty()) {
        problems.append("missing: " + use.section + " > " + use.key + ", asked for by " + use.place);
      }
    }
    for (const auto &fixed : FixedKeys) {
      for (const QString &key : QString(fixed.keys).split(u' ')) {
        if (!file.HasKey(fixed.section, key)) problems.append("missing: " + QString(fixed.section) + " > " + key);
      }
    }

    const QString locale = file.Value("INFO", "Locale");
    QSet<QString> seen;
    for (const QString &section : file.Sections()) {
      for (const auto &[key, value] : file.Pairs(section)) {
        const QString name = section + " > " + key;
        if (seen.contains(name.toCaseFolded())) problems.append("twice: " + name);
        seen.insert(name.toCaseFolded());
        if (value.isEmpty()) problems.append("empty: " + name);
        if (value.startsWith(u"__") || value.startsWith(u"~~") || value.contains("UNDEFINED")) {
          problems.append("a marker: " + name + "=" + value);
        }
        for (const auto &[language, wrong] : WrongSigns) {
          if (locale == language && value.contains(wrong)) problems.append("punctuation: " + name + "=" + value);
        }
        if (Shape(value) != Shape(m_english.Value(section, key, value))) {
          problems.append("other placeholders or parts than in English: " + name + "=" + value);
        }
      }
    }
    const QStringList keys = AllKeys(file);
    const QStringList englishKeys = AllKeys(m_english);
    const QSet<QString> present(keys.begin(), keys.end());
    const QSet<QString> wanted(englishKeys.begin(), englishKeys.end());
    for (const QString &name : wanted - present) problems.append("not translated: " + name);
    for (const QString &name : present - wanted) problems.append("not in English: " + name);

    if (QLocale(locale).language() == QLocale::C) problems.append("no such locale: " + locale);
    TLanguage language;
    QVERIFY(language.LoadFile(path));
    if (language.Direction() != QLocale(locale).textDirection()) problems.append("other direction than " + locale);
    problems.sort();
    problems.removeDuplicates();
    QVERIFY2(problems.isEmpty(), qPrintable(Listed(problems)));
  }

 private:
  TIniFile m_english;
  QList<TUse> m_uses;
  QStringList m_problems;
};

QTEST_GUILESS_MAIN(TTestShippedLanguages)
#include "test_shipped_languages.moc"
