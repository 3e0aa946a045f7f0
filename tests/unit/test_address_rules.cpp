#include <QtTest>

#include "search/address_forms.h"
#include "search/host_emphasis.h"
#include "search/inline_completion.h"
#include "search/quick_search.h"
#include "search/typed_addresses.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/store_trouble.h"
#include "ui/shown_address.h"

using TFault = QuickSearchFormat::TFault;
using TKind = TQuickSearch::TKind;

// What is made of a text that was typed into the address bar, and of an address that is shown there.
class TTestAddressRules final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void HostInAddress_data() {
    Columns<QString, QString>("address", "host");
    Row("plain", "http://example.test/path?q=a@b", "example.test");
    Row("nothing behind it", "https://example.test", "example.test");
    Row("port", "http://example.test:8080/", "example.test");
    Row("user whose name is a host", "https://bank.test:x@evil.test/", "evil.test");
    Row("IPv6", "http://[::1]:80/", "[::1]");
    Row("in its own letters", QString::fromUtf8("https://bücher.test#a"), QString::fromUtf8("bücher.test"));
    Row("file", "file:///home/a", "");
    Row("no scheme", "://example.test", "");
    Row("words", "what is http", "");
    Row("empty", "", "");
  }
  void HostInAddress() {
    QFETCH(QString, address);
    const THostEmphasis::TRange range = THostEmphasis::HostIn(address);
    QTEST(address.mid(range.start, range.length), "host");
  }

  void FrameAddress_data() {
    Columns<QString, QString, QString, QString>("text", "prefix", "suffix", "result");
    const auto row = [](const char *name, const char *text, const char *suffix, const char *result,
                        const char *prefix = "http://www.") { Row(name, text, prefix, suffix, result); };
    row("bare word", "word", ".com", "http://www.word.com");
    row("has the suffix", "example.com", ".com", "http://www.example.com");
    row("known ending with a slash", "example.org/", ".com", "http://www.example.org/");
    row("known ending in capitals", "example.COM", ".com", "http://www.example.COM.com");
    row("own suffix comes twice", "a.co.uk", ".co.uk", "http://www.a.co.uk.co.uk");
    row("own suffix and one character", "a.co.uk/", ".co.uk", "http://www.a.co.uk/");
    row("own suffix and two characters", "a.co.uk/b", ".co.uk", "http://www.a.co.uk/b.co.uk");
    row("any one character", "a.edux", ".edu", "http://www.a.edux");
    row("prefix in capitals", "HTTP://WWW.word", ".net", "http://www.HTTP://WWW.word.net");
    row("prefix is there", "http://www.word", ".net", "http://www.word.net");
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
    Columns<QString, int, QString>("typed", "entry", "text");  // -1: none
    Row("behind the scheme", "exam", 1, "example.org/Path");
    Row("case is one, and becomes the entry's", "EXAMPLE.ORG/p", 1, "example.org/Path");
    Row("direct match wins", "exact", 3, "exact.example");
    Row("first entry wins", "http://e", 1, "http://example.org/Path");
    Row("scheme, direct", "ht", 0, "http://");
    Row("begins like the scheme, and is not", "ho", 5, "hotel.example");
    Row("nothing", "zebra", -1, "");
    Row("https is not taken off", "secure", -1, "");
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

  void Formats_data() {
    Columns<QString, TFault, QString>("format", "fault", "address");
    const auto good = [](const char *format, const char *address) { Row(format, format, TFault::None, address); };
    const auto bad = [](const char *format, TFault fault) { Row(format, format, fault, QString()); };
    good("http://a.example/?q=%s", "http://a.example/?q=two  %s words");
    good("http://a.example/%%20%s%%", "http://a.example/%20two  %s words%");
    good("http://a.example/", "http://a.example/");
    good("%%%s", "%two  %s words");
    bad("%s%s", TFault::SeveralPlaces);
    bad("http://a.example/%20%s", TFault::BadPlace);
    bad("%d", TFault::BadPlace);
    bad("%S", TFault::BadPlace);
    bad("%s%", TFault::BadPlace);
  }
  void Formats() {
    QFETCH(QString, format);
    auto fault = TFault::SeveralPlaces;
    QTEST(QuickSearchFormat::Fill(format, "two  %s words", fault), "address");
    QTEST(fault, "fault");
  }

  void Keywords_data() {
    Columns<QString, TKind, QString>("text", "kind", "address");
    Row("one word", "g word", TKind::Address, "http://a.example/?q=word");
    Row("all words, as they are", "g two  words ", TKind::Address, "http://a.example/?q=two  words ");
    Row("no query", "g ", TKind::Address, "http://a.example/?q=");
    Row("blank first", " g word", TKind::None, "");
    Row("keyword's case", "G word", TKind::Address, "http://a.example/?q=word");
    Row("keyword alone", "g", TKind::None, "");
    Row("other blank than the blank", "g\tword", TKind::None, "");
    Row("unknown", "x word", TKind::None, "");
    Row("empty format", "none word", TKind::None, "");
    Row("format with =", "long word", TKind::Address, "http://b.example/?a=1&q=word");
    Row("first of two", "twice word", TKind::Address, "http://1.example/");
    Row("bad", "bad word", TKind::BadFormat, "");
  }
  void Keywords() {
    const TNamedAddresses searches = {
        {"g", "http://a.example/?q=%s"}, {"none", ""},          {"long", "http://b.example/?a=1&q=%s"},
        {"twice", "http://1.example/"},  {"TWICE", "http://2"}, {"bad", "http://c.example/%s%s"}};
    QFETCH(QString, text);
    const TQuickSearch found = TQuickSearch::Of(text, searches);
    QTEST(found.kind, "kind");
    QTEST(found.address, "address");
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
    QVERIFY(again.Load(store));
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

  // Two processes have the list: each brings in what it has changed, and leaves what the other has.
  void TypedAddressesOfTwoProcesses_data() {
    Columns<QString, QString>("changes", "stored");  // in the order in which they are made; "+" files, "-" removes
    Row("nothing", "", "z3210");
    Row("new ones", "+a+b", "baz3210");
    Row("one that is there", "+1", "1z320");
    Row("removed", "-1-7", "z320");
    Row("removed and typed again", "-1+1", "1z320");
    Row("typed and removed again", "+a-a", "z3210");
    Row("cleared", "!", "");
    Row("cleared and typed", "+a!+1+b", "b1");
  }
  void TypedAddressesOfTwoProcesses() {
    QFETCH(QString, changes);
    QFETCH(QString, stored);
    QTemporaryDir folder;
    TRegistryStore store(folder.filePath("registry.sqlite"));
    TTypedAddresses first;
    for (const char *address : {"0", "1", "2", "3"}) first.File(address);
    first.Save(store);
    TTypedAddresses one;
    TTypedAddresses other;
    QVERIFY(one.Load(store) && other.Load(store));
    for (qsizetype i = 0; i < changes.size(); ++i) {
      if (changes.at(i) == u'!') one.Clear();
      if (changes.at(i) == u'+') one.File(changes.mid(i + 1, 1));
      if (changes.at(i) == u'-') one.Remove(changes.mid(i + 1, 1));
    }
    other.File("z");
    other.Save(store);
    // Saved again it brings nothing back.
    for (int round = 0; round < 2; ++round) {
      one.Save(store);
      QVERIFY(other.Load(store));
      QCOMPARE(other.List().join(QString()), stored);
    }
  }

  // What was typed while the list could not be read joins it later.
  void TypedAddressesThatCannotBeRead() {
    QTemporaryDir folder;
    const QString path = folder.filePath("registry.sqlite");
    TTypedAddresses first;
    first.File("old");
    TRegistryStore store(path);
    first.Save(store);
    TTypedAddresses late;
    {
      const TStoreLock lock(path, TStoreLock::TKind::Unreadable);
      QVERIFY(!late.Load(store) && !late.IsLoaded());
      late.File("new");
      late.Save(store);
    }
    QVERIFY(late.Load(store));
    QCOMPARE(late.List(), QStringList({"new", "old"}));
    QVERIFY(store.Flush(1000) && first.Load(TRegistryStore(path)));
    QCOMPARE(first.List(), late.List());
  }

  void Shown_data() {
    Columns<QString, QString>("address", "shown");
    Row("blank", "about:blank", "");
    Row("german", "http://xn--bcher-kva.example/a%20b?c#d", "http://bücher.example/a%20b?c#d");
    Row("user and port", "http://xn--u@xn--bcher-kva.example:8080/", "http://xn--u@bücher.example:8080/");
    Row("only that label", "http://xn--80ak6aa92e.xn--bcher-kva.example/", "http://xn--80ak6aa92e.bücher.example/");
    Row("no valid name", "http://xn--a.example/", "http://xn--a.example/");
    Row("in the path only", "http://example.org/xn--bcher-kva", "http://example.org/xn--bcher-kva");
  }
  void Shown() {
    QFETCH(QString, address);
    const QString shown = ShownAddress(address);
    QTEST(shown, "shown");
    if (!shown.isEmpty()) QCOMPARE(QString::fromLatin1(QUrl(shown).toEncoded()), address);
  }

  // What people write their names with.
  void HonestNames() {
    for (const QString name :
         {"paral\u00B7lel", "việtnam", "コーヒー", "東京tower", "tokyo-カラオケ", "서울abc", "æble",
          "œuvre",          "straße",  "łódź",     "þór",       "smørrebrød",     "тест",    "ёлка",
          "київ",           "ελλάδα",  "հայ",      "שלום",      "مرحبا",          "हिन्दी",   "ไทย"}) {
      const QString ace = QString::fromLatin1(QUrl::toAce(name));
      QVERIFY(ace.startsWith("xn--"));
      QCOMPARE(ShownHost(ace), name);
    }
  }

  void LookAlikes_data() {
    Columns<QString>("name");
    Row("one Cyrillic letter among Latin ones", "ex\u0430mple");
    Row("one Greek letter among Latin ones", "g\u03BFogle");
    Row("all Cyrillic", "\u0430\u0440\u0440\u04CF\u0435");
    Row("with a digit", "\u0455\u04BB\u043E\u04402");
    Row("with a mark upon it", "\u0430\u0440\u0440\u04CF\u0435\u0323");
    Row("all Greek", "\u03BF\u03BD\u03BF");
    Row("all Armenian", "\u0585\u057D\u0581");
    Row("Cyrillic and Greek", "\u0436\u03BB");
    Row("a letter without its dot", "g\u0131thub");
    Row("a small capital", "\u0262oogle");
    Row("a letter of phonetics", "\u0251pple");
    Row("a stroke that is a letter", "paypa\u01C0");
    Row("a stroke through a letter", "a\u0338b");
    Row("a dot that is none", "paypal\u00B7com");
    Row("a point that is none", "paypal・com");
    Row("a slash that is none", "comノa");
    Row("a dash that is none", "paypal一com");
    Row("a long vowel as a dash", "paypalー日本");
    Row("... behind a word", "日本ーcom");
    Row("a quotation mark", "l\u02BCoreal");
    Row("digits of two scripts", "1\u0968\u09E8");
    Row("no letter of its own", "xn--abc-");
    Row("nothing to be seen", "xn--paypal-rf0c");
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
