#include <QtTest>

#include "search/address_forms.h"
#include "search/inline_completion.h"
#include "search/typed_addresses.h"
#include "store/registry_store.h"
#include "ui/shown_address.h"

// What is made of a text that was typed into the address bar, and of an address that is shown there.
class TTestAddressRules final : public QObject {
  Q_OBJECT

 private Q_SLOTS:

  void EnterForms_data() {
    QTest::addColumn<Qt::KeyboardModifiers>("keys");
    QTest::addColumn<QString>("result");
    QTest::newRow("plain") << Qt::KeyboardModifiers() << " word ";
    QTest::newRow("ctrl") << Qt::KeyboardModifiers(Qt::ControlModifier) << "c: word .c";
    QTest::newRow("shift") << Qt::KeyboardModifiers(Qt::ShiftModifier) << "s: word .s";
    QTest::newRow("both") << (Qt::ControlModifier | Qt::ShiftModifier) << "cs: word .cs";
    QTest::newRow("alt is no form") << Qt::KeyboardModifiers(Qt::AltModifier) << " word ";
    QTest::newRow("keypad") << (Qt::KeypadModifier | Qt::ControlModifier) << "c: word .c";
  }

  void EnterForms() {
    const TAddressForms forms{{"c:", ".c"}, {"s:", ".s"}, {"cs:", ".cs"}};
    QFETCH(Qt::KeyboardModifiers, keys);
    QTEST(forms.Apply(" word ", keys), "result");
  }

  void FrameAddress_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("prefix");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const char *text, const char *suffix, const char *result,
                        const char *prefix = "http://www.") {
      QTest::newRow(name) << text << prefix << suffix << result;
    };
    row("bare word", "word", ".com", "http://www.word.com");
    row("has the suffix", "example.com", ".com", "http://www.example.com");
    row("has another known ending", "http://www.example.net", ".com", "http://www.example.net");
    row("known ending with a slash", "example.org/", ".com", "http://www.example.org/");
    row("known ending in capitals", "example.COM", ".com", "http://www.example.COM.com");
    row("own suffix comes twice", "a.co.uk", ".co.uk", "http://www.a.co.uk.co.uk");
    row("own suffix and one character", "a.co.uk/", ".co.uk", "http://www.a.co.uk/");
    row("own suffix and two characters", "a.co.uk/b", ".co.uk", "http://www.a.co.uk/b.co.uk");
    row("any one character", "a.edux", ".edu", "http://www.a.edux");
    row("prefix in capitals", "HTTP://WWW.word", ".net", "http://www.HTTP://WWW.word.net");
    row("prefix is there", "http://www.word", ".net", "http://www.word.net");
    row("other scheme", "https://word", ".com", "http://www.https://word.com");
    row("path", "word/path", ".com", "http://www.word/path.com");
    row("empty text", "", ".com", "http://www..com");
    row("empty suffix", "word", "", "http://www.word");
    row("empty prefix", "word", ".com", "word.com", "");
    row("the suffix alone", ".edu", ".edu", ".edu.edu", "");
    row("shorter than the suffix", "a", ".museum", "a.museum", "");
    row("nothing at all", "", ".com", ".com", "");
  }

  void FrameAddress() {
    QFETCH(QString, text);
    QFETCH(QString, prefix);
    QFETCH(QString, suffix);
    QTEST(::FrameAddress(text, {prefix, suffix}), "result");
  }

  void Completion_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("entry");  // -1: none
    QTest::addColumn<QString>("text");
    QTest::newRow("behind the scheme") << "exam" << 1 << "example.org/Path";
    QTest::newRow("case is one, and becomes the entry's") << "EXAMPLE.ORG/p" << 1 << "example.org/Path";
    QTest::newRow("direct match wins") << "exact" << 3 << "exact.example";
    QTest::newRow("first entry wins") << "http://e" << 1 << "http://example.org/Path";
    QTest::newRow("scheme, direct") << "ht" << 0 << "http://";
    QTest::newRow("the whole scheme, direct") << "http://" << 0 << "http://";
    QTest::newRow("begins like the scheme, and is not") << "ho" << 5 << "hotel.example";
    QTest::newRow("nothing") << "zebra" << -1 << QString();
    QTest::newRow("long and behind the scheme") << "intranet.ex" << 2 << "intranet.example";
    QTest::newRow("https is not taken off") << "secure" << -1 << QString();
  }

  void Completion() {
    const QStringList entries = {"http://",       "http://example.org/Path", "http://intranet.example",
                                 "exact.example", "https://secure.example",  "http://hotel.example"};
    QFETCH(QString, typed);
    QFETCH(int, entry);
    const auto found = TInlineCompletion::Of(typed, entries);
    QCOMPARE(found ? int(found->entry) : -1, entry);
    if (found) QTEST(found->text, "text");
  }

  void TypedAddressesMoveAndEnd() {
    TTypedAddresses typed;
    for (int i = 1; i <= 26; ++i) typed.File(QString("http://%1.example/").arg(i));
    QCOMPARE(typed.List().size(), 25);
    QCOMPARE(typed.List().first(), QString("http://26.example/"));
    QCOMPARE(typed.List().last(), QString("http://2.example/"));
    typed.File("http://2.example/");
    QCOMPARE(typed.List().size(), 25);
    QCOMPARE(typed.List().first(), QString("http://2.example/"));
    typed.File("http://2.EXAMPLE/");
    QCOMPARE(typed.List().mid(0, 2), QStringList({"http://2.EXAMPLE/", "http://2.example/"}));
  }

  void TypedAddressesAreStored() {
    const QString key = R"(Software\Microsoft\Internet Explorer\TypedUrls)";
    QTemporaryDir folder;
    TRegistryStore store(folder.filePath("registry.sqlite"));
    TTypedAddresses typed;
    typed.File("http://b.example/?x=1");
    typed.File("http://a.example/");
    store.Write(TRegistryHive::CurrentUser, key, "url7", "left over");
    typed.Save(store);
    QCOMPARE(store.Values(TRegistryHive::CurrentUser, key).size(), 2);
    QCOMPARE(store.Read(TRegistryHive::CurrentUser, key, "url2"), QString("http://b.example/?x=1"));
    TTypedAddresses again;
    again.File("http://forgotten.example/");
    again.Load(store);
    QCOMPARE(again.List(), typed.List());

    // A gap or an empty value ends the list, and so does the most that it holds.
    store.Write(TRegistryHive::CurrentUser, key, "url3", "");
    for (int i = 4; i <= 40; ++i) store.Write(TRegistryHive::CurrentUser, key, QString("url%1").arg(i), "x");
    again.Load(store);
    QCOMPARE(again.List().size(), 2);
    store.Write(TRegistryHive::CurrentUser, key, "url3", "y");
    again.Load(store);
    QCOMPARE(again.List().size(), 25);

    again.Clear();
    again.Save(store);
    QVERIFY(store.KeyExists(TRegistryHive::CurrentUser, key));
    QVERIFY(store.Values(TRegistryHive::CurrentUser, key).isEmpty());
  }

  void Shown_data() {
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("shown");
    QTest::newRow("blank") << "about:blank"
                           << "";
    QTest::newRow("plain") << "http://example.org/a%20b"
                           << "http://example.org/a%20b";
    QTest::newRow("german") << "http://xn--bcher-kva.example/a%20b?c#d"
                            << "http://bücher.example/a%20b?c#d";
    QTest::newRow("user and port") << "http://xn--u@xn--bcher-kva.example:8080/"
                                   << "http://xn--u@bücher.example:8080/";
    QTest::newRow("japanese") << "http://xn--eckwd4c7c.xn--zckzah/"
                              << "http://ドメイン.テスト/";
    QTest::newRow("russian") << "http://xn--e1afmkfd.xn--80akhbyknj4f/"
                             << "http://пример.испытание/";
    QTest::newRow("only that label") << "http://xn--80ak6aa92e.xn--bcher-kva.example/"
                                     << "http://xn--80ak6aa92e.bücher.example/";
    QTest::newRow("no valid name") << "http://xn--a.example/"
                                   << "http://xn--a.example/";
    QTest::newRow("in the path only") << "http://example.org/xn--bcher-kva"
                                      << "http://example.org/xn--bcher-kva";
  }

  void Shown() {
    QFETCH(QString, address);
    const QString shown = ShownAddress(address);
    QTEST(shown, "shown");
    if (!shown.isEmpty()) QCOMPARE(QString::fromLatin1(QUrl(shown).toEncoded()), address);
  }

  // What people write their names with.
  void HonestNames_data() {
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"paral\u00B7lel", "việtnam", "コーヒー", "東京tower", "tokyo-カラオケ", "서울abc", "æble",
          "œuvre",          "straße",  "łódź",     "þór",       "smørrebrød",     "тест",    "ёлка",
          "київ",           "ελλάδα",  "հայ",      "שלום",      "مرحبا",          "हिन्दी",   "ไทย"}) {
      QTest::newRow(name) << QString(name);
    }
  }

  void HonestNames() {
    QFETCH(QString, name);
    const QString ace = QString::fromLatin1(QUrl::toAce(name));
    QVERIFY(ace.startsWith("xn--"));
    QCOMPARE(ShownHost(ace), name);
  }

  void LookAlikes_data() {
    QTest::addColumn<QString>("name");
    const struct {
      const char *what;
      QString name;
    } names[] = {
        {"one Cyrillic letter among Latin ones", "ex\u0430mple"},
        {"one Greek letter among Latin ones", "g\u03BFogle"},
        {"all Cyrillic", "\u0430\u0440\u0440\u04CF\u0435"},
        {"all Cyrillic, longer", "\u0440\u0430\u0443\u0440\u0430\u04CF"},
        {"with a digit", "\u0455\u04BB\u043E\u04402"},
        {"with a mark upon it", "\u0430\u0440\u0440\u04CF\u0435\u0323"},
        {"all Greek", "\u03BF\u03BD\u03BF"},
        {"all Armenian", "\u0585\u057D\u0581"},
        {"Cyrillic and Greek", "\u0436\u03BB"},
        {"a letter without its dot", "g\u0131thub"},
        {"a small capital", "\u0262oogle"},
        {"a letter of phonetics", "\u0251pple"},
        {"a stroke that is a letter", "paypa\u01C0"},
        {"a stroke through a letter", "a\u0338b"},
        {"a line below a letter", "micros\u0331oft"},
        {"a dot that is none", "paypal\u00B7com"},
        {"a point that is none", "paypal・com"},
        {"a slash that is none", "comノa"},
        {"a dash that is none", "paypal一com"},
        {"a long vowel as a dash", "paypalー日本"},
        {"... behind a word", "日本ーcom"},
        {"a quotation mark", "l\u02BCoreal"},
        {"digits of two scripts", "1\u0968\u09E8"},
        {"no letter of its own", "xn--abc-"},
        {"nothing to be seen", "xn--paypal-rf0c"},
    };
    for (const auto &row : names) QTest::newRow(row.what) << row.name;
  }

  void LookAlikes() {
    QFETCH(QString, name);
    const QString ace = name.startsWith("xn--") ? name : QString::fromLatin1(QUrl::toAce(name));
    QVERIFY2(ace.startsWith("xn--"), qPrintable(ace));
    QCOMPARE(ShownHost(ace), ace);
  }
};

QTEST_GUILESS_MAIN(TTestAddressRules)
#include "test_address_rules.moc"
