#include <sys/stat.h>
#include <QTemporaryDir>
#include <QTest>

#include "config/settings.h"
#include "support/data_row.h"
#include "user_scripts/user_scripts.h"

using namespace Qt::StringLiterals;

// What a user script says of itself, which pages it is for, and which files the list may name.
class TestUserScriptFiles final : public QObject {
  Q_OBJECT

 private:
  [[nodiscard]] static QByteArray Script(const QByteArray &rules) {
    return "// ==UserScript==\n" + rules + "\n// ==/UserScript==\nrun();\n";
  }
  static void Write(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  [[nodiscard]] static QString InFolder(const QString &name) { return TUserScripts::Folder() + u'/' + name; }

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    m_settings = std::make_unique<TSettings>(*m_store);
    QVERIFY(QDir(TUserScripts::Folder()).removeRecursively() && QDir().mkpath(TUserScripts::Folder()));
  }

  void Rules_data() {
    Columns<QByteArray, QString, bool>("rules", "address", "isFor");
    const auto row = [](const char *rules, const char *address, bool isFor) {
      QTest::addRow("%s %s", rules, address) << QByteArray(rules) << QString::fromUtf8(address) << isFor;
    };
    row("// @match *://*/*", "http://a.test/", true);
    row("// @match *://*/*", "https://a.test:8080/x?y=z", true);
    row("// @match *://*/*", "ftp://a.test/", false);
    row("// @match <all_urls>", "https://a.test/", true);
    row("// @match https://a.test/*", "http://a.test/", false);
    row("// @match http://a.test/b*", "http://a.test/bc/d?e", true);
    row("// @match http://a.test/b*", "http://a.test/c", false);
    row("// @match http://a.test/b", "http://a.test/bb", false);
    row("// @match http://a.test/b", "http://a.test/b#c", true);
    row("// @match http://A.test/*", "http://a.test/", true);
    row("// @match http://bücher.test/*", "http://bücher.test/", true);
    row("// @match http://*.a.test/*", "http://a.test/", true);
    row("// @match http://*.a.test/*", "http://b.c.a.test/", true);
    row("// @match http://*.a.test/*", "http://ba.test/", false);
    row("// @match http://*.a.test/*", "http://b.test/.a.test/", false);
    row("// @match http://*.a.test/*", "http://x@b.test/", false);
    row("// @match http://a.test:81/*", "http://a.test:81/", true);
    row("// @match http://a.test:81/*", "http://a.test:82/", false);
    row("// @match http://a.test/(x)", "http://a.test/(x)", true);
    row("// @include *a.test*", "http://a.test/b", true);
    row("// @include http://a.test/", "http://a.test/b", false);
    row(R"(// @include /^https?:\/\/a\.test\/\d+$/)", "http://a.test/12", true);
    row(R"(// @include /^https?:\/\/a\.test\/\d+$/)", "http://a.test/x", false);
    row("// @match http://b.test/*\n// @include http://a.test/*", "http://a.test/", true);
    row("// @match *://*/*\n// @exclude */private*", "http://a.test/private", false);
    row("// @match *://*/*\n// @exclude */private*", "http://a.test/public", true);
    row("  //\t@match   *://*/*  \r", "http://a.test/", true);
    // What would take years to say: not here.
    row("// @include /(x+x+)+[yz]/", "http://a.test/xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", false);
    row("// @match *://*/*\n// @exclude /(x+x+)+[yz]/", "http://a.test/xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx",
        false);
  }
  void Rules() {
    QFETCH(QByteArray, rules);
    QFETCH(QString, address);
    QFETCH(bool, isFor);
    const TUserScriptFile file = TUserScriptFile::Parse(Script(rules));
    QCOMPARE(file.trouble, TScriptTrouble::None);
    QCOMPARE(file.IsFor(QUrl(address)), isFor);
  }

  void Troubles_data() {
    Columns<QByteArray, TScriptTrouble>("bytes", "trouble");
    using enum TScriptTrouble;
    const QByteArray good = Script("// @match *://*/*");
    Row("good", good, None);
    Row("with a mark in front", "\xEF\xBB\xBF" + good, None);
    Row("code in front", "'use strict';\n" + good, None);
    Row("empty", QByteArray(), NoBlock);
    Row("no block", QByteArray("alert(1)"), NoBlock);
    Row("no end", QByteArray("// ==UserScript==\n// @match *://*/*\n"), NoBlock);
    Row("endless", "// ==UserScript==\n" + QByteArray("//\n").repeated(3000) + "// ==/UserScript==", NoBlock);
    Row("no rule", Script("// @name x"), NoRule);
    Row("rule outside", Script("") + "// @match *://*/*\n", NoRule);
    Row("no pattern", Script("// @match nonsense"), BadRule);
    Row("no path", Script("// @match http://a.test"), BadRule);
    Row("files", Script("// @match file:///*"), BadRule);
    Row("no expression", Script("// @match *://*/*\n// @exclude /(/"), BadRule);
    Row("no UTF-8", good + "\xE4", NotText);
    Row("cut off", good + "\xE2\x82", NotText);
    Row("UTF-16", QByteArray("\xFF\xFE/\0/\0", 6), NotText);
    Row("a picture", QByteArray("\x89PNG\0\0", 6), NotText);
    Row("too large", good + QByteArray(TUserScriptFile::MostBytes, ' '), TooLarge);
  }
  void Troubles() {
    QFETCH(QByteArray, bytes);
    QFETCH(TScriptTrouble, trouble);
    const TUserScriptFile file = TUserScriptFile::Parse(bytes);
    QCOMPARE(file.trouble, trouble);
    QCOMPARE(file.IsFor(QUrl(u"http://a.test/"_s)), trouble == TScriptTrouble::None);
  }

  void Block() {
    const TUserScriptFile file = TUserScriptFile::Parse(
        "// first\n" + Script("// @name:de Eins\n// @name One\n// @name Two\n// @run-at document-end\n"
                              "// @grant none\n// @match *://*/*"));
    QCOMPARE(file.name, u"One"_s);
    QCOMPARE(file.moment, TPageScript::TMoment::Ready);
    // Lines keep their numbers, and nothing is left that the engine would go by.
    QCOMPARE(file.source.indexOf(u"run();"_s), file.source.lastIndexOf(u'\n', -2) + 1);
    QCOMPARE(file.source.count(u'\n'), 10);
    QVERIFY(!file.source.contains(u'@'));
  }

  void Names_data() {
    Columns<QString, TScriptTrouble>("name", "trouble");
    using enum TScriptTrouble;
    Row("there", u"a.js"_s, None);
    Row("link inside", u"inside.js"_s, None);
    Row("not there", u"b.js"_s, Missing);
    Row("folder", u"folder"_s, Missing);
    Row("pipe", u"pipe.js"_s, Missing);
    Row("above", u"../outside.js"_s, BadName);
    Row("within a folder", u"folder/a.js"_s, BadName);
    Row("whole path", m_outside, BadName);
    Row("link outside", u"outside.js"_s, BadName);
    Row("folder itself", u"."_s, BadName);
    Row("folder above", u".."_s, BadName);
    Row("nothing", QString(), BadName);
  }
  // Only a file of the folder itself is looked into, whatever the list says.
  void Names() {
    QFETCH(QString, name);
    QFETCH(TScriptTrouble, trouble);
    const QByteArray good = Script("// @match *://*/*");
    const QDir folder(TUserScripts::Folder());
    Write(InFolder(u"a.js"_s), good);
    Write(InFolder(u"../outside.js"_s), good);
    QVERIFY(folder.mkdir(u"folder"_s));
    Write(InFolder(u"folder/a.js"_s), good);
    QVERIFY(QFile::link(u"a.js"_s, InFolder(u"inside.js"_s)));
    QVERIFY(QFile::link(u"../outside.js"_s, InFolder(u"outside.js"_s)));
    QCOMPARE(mkfifo(qPrintable(InFolder(u"pipe.js"_s)), 0600), 0);
    QCOMPARE(TUserScripts::Look(name).trouble, trouble);
  }

  // The list: files come into the folder under a name that is free, and none is written over.
  void List() {
    TUserScripts scripts(*m_settings);
    QVERIFY(scripts.Entries().isEmpty());
    const QString path = m_folder->filePath(u"a.user.js"_s);
    Write(path, Script("// @match *://*/*"));
    const auto first = scripts.Add(path);
    QCOMPARE(first, u"a.user.js"_s);
    QCOMPARE(scripts.Add(path), first);
    QCOMPARE(scripts.Entries().size(), 1);
    Write(path, Script("// @match http://other.test/*"));
    const auto second = scripts.Add(path);
    QVERIFY(second && second != first);
    QVERIFY(TUserScripts::Look(*first).IsFor(QUrl(u"http://a.test/"_s)));
    QVERIFY(!scripts.Add(m_folder->filePath(u"none.js"_s)));
    // The list knows no upper and lower case, other than the folder.
    Write(m_folder->filePath(u"A.user.js"_s), Script("// @match http://third.test/*"));
    const auto third = scripts.Add(m_folder->filePath(u"A.user.js"_s));
    QCOMPARE(scripts.Entries().size(), 3);
    scripts.Remove(*third);
    scripts.SetOn(*first, false);
    QCOMPARE(scripts.Entries().value(0).isOn, false);
    QCOMPARE(scripts.Entries().value(1).isOn, true);
    // Nothing is loaded before the setting says so, and each time it is set the files are read.
    const auto runs = [&](const char *page, TSecurityZone zone = TSecurityZone::Internet) {
      const QList<TPageScript> loaded = scripts.Loaded();
      return int(std::ranges::count_if(loaded, [&](const TPageScript &script) {
        return scripts.MayRun(script.id, QUrl(QString::fromLatin1(page)), zone);
      }));
    };
    QCOMPARE(runs("http://other.test/"), 0);
    m_settings->Set(Setting::LoadBHOs, true);
    QCOMPARE(runs("http://other.test/"), 1);
    // What a script could not do is forgotten when it changes.
    const QString running = scripts.Entries().value(1).file;
    scripts.NoteFailure(scripts.Loaded().first().id, u"boom"_s, 3);
    QCOMPARE(scripts.LastFailure(running).reason, u"boom"_s);
    scripts.SetOn(*first, true);
    m_settings->Set(Setting::LoadBHOs, true);
    QCOMPARE(scripts.LastFailure(running).reason, u"boom"_s);
    Write(TUserScripts::Folder() + u'/' + running, Script("// @match http://other.test/*\n// @exclude */none"));
    m_settings->Set(Setting::LoadBHOs, true);
    QCOMPARE(scripts.LastFailure(running).reason, QString());
    QCOMPARE(runs("http://other.test/"), 2);
    QVERIFY(scripts.Loaded().first().world != scripts.Loaded().last().world);
    for (const auto zone : {TSecurityZone::Unknown, TSecurityZone::LocalMachine, TSecurityZone::Restricted}) {
      QCOMPARE(runs("http://other.test/", zone), 0);
    }
    scripts.Remove(*first);
    QCOMPARE(scripts.Entries().size(), 1);
    QVERIFY(QFile::exists(InFolder(*first)));
    m_settings->Set(Setting::LoadBHOs, false);
    QCOMPARE(runs("http://other.test/"), 0);
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TSettings> m_settings;
  const QString m_outside = TUserScripts::Folder() + u"/../outside.js"_s;
};

QTEST_GUILESS_MAIN(TestUserScriptFiles)
#include "test_user_script_files.moc"
