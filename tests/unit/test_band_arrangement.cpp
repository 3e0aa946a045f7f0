#include <algorithm>
#include <memory>
#include <QTemporaryDir>
#include <QTest>
#include <utility>

#include "chrome/bands/band_arrangement.h"
#include "chrome/bands/band_store.h"
#include "config/registry_paths.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/store_trouble.h"

using namespace Qt::StringLiterals;

// Where the bands stand, without a widget: what is stored, what comes of it in a bar, and what the user does to it.
// Menu, Tool, Address and Links are written M, T, A and L; the least widths in a bar are 50, 50, 60 and 20.
class TestBandArrangement final : public QObject {
  Q_OBJECT

 private:
  static constexpr int BarWidth = 1000;

  static TBand BandOf(QChar letter) {
    const auto row = std::ranges::find(BandRows, letter, [](const TBandRow &band) { return QChar(band.name[0]); });
    return row->band;
  }
  static QChar LetterOf(TBand band) { return QChar(BandRows[static_cast<size_t>(band)].name[0]); }

  // "M300 T200/A400 L": one row for each part, the letters of bands that are not shown small. No number leaves the
  // width that the band has at first.
  static TBandArrangement Made(const QString &text) {
    TBandArrangement bands;
    int position = 0;
    for (const QString &row : text.split(u'/')) {
      bool begins = position > 0;
      for (const QString &word : row.split(u' ')) {
        const TBand band = BandOf(word.front().toUpper());
        bands.MoveTo(band, position++);
        bands.SetBreak(band, std::exchange(begins, false));
        bands.SetShown(band, word.front().isUpper());
        if (word.size() > 1) bands.SetWidth(band, word.mid(1).toInt());
      }
    }
    for (const auto &[band, least] : {std::pair(TBand::Menu, 50), {TBand::Tool, 50}, {TBand::Address, 60}}) {
      bands.SetLeast(band, least);
    }
    bands.SetLeast(TBand::Links, 20);
    return bands;
  }
  // What is shown: "M:0+648 L:648+352/T:0+1000".
  static QString Shown(const TBandArrangement &bands, int width = BarWidth) {
    QStringList rows;
    for (const auto &row : bands.Rows(width)) {
      QStringList places;
      for (const auto &place : row) places << u"%1:%2+%3"_s.arg(LetterOf(place.band)).arg(place.x).arg(place.width);
      rows << places.join(u' ');
    }
    return rows.join(u'/');
  }
  // The order and the rows alone, with what is not shown: "ML/T/A".
  static QString Order(const TBandArrangement &bands) {
    QString order;
    for (int i = 0; i < BandCount; ++i) {
      if (bands.Breaks(bands.At(i))) order += u'/';
      order += LetterOf(bands.At(i));
    }
    return order;
  }

 private Q_SLOTS:
  void Rows_data() {
    Columns<QString, int, QString>("bands", "width", "shown");
    Row("at first", u"M/T/A L"_s, 1000, u"M:0+1000/T:0+1000/A:0+484 L:484+516"_s);
    Row("all in a row", u"M300 T200 A100 L100"_s, 1000, u"M:0+300 T:300+200 A:500+100 L:600+400"_s);
    Row("the last gives way first", u"M300 T200 A100 L100"_s, 620, u"M:0+300 T:300+200 A:500+100 L:600+20"_s);
    Row("then the one before it", u"M300 T200 A100 L100"_s, 400, u"M:0+270 T:270+50 A:320+60 L:380+20"_s);
    Row("all at their least", u"M300 T200 A100 L100"_s, 180, u"M:0+50 T:50+50 A:100+60 L:160+20"_s);
    Row("no room for all", u"M300 T200 A100 L100"_s, 179, u"M:0+69 T:69+50 A:119+60/L:0+179"_s);
    Row("no room for any", u"M300 T200 A100 L100"_s, 10, u"M:0+10/T:0+10/A:0+10/L:0+10"_s);
    Row("no bar", u"M300 T200/A100 L100"_s, -5, u"M:0+0/T:0+0/A:0+0/L:0+0"_s);
    Row("no widths", u"M0 T0 A0 L0"_s, 1000, u"M:0+50 T:50+50 A:100+60 L:160+840"_s);
    Row("huge widths", u"M100000 T100000 A100000 L100000"_s, 1000, u"M:0+870 T:870+50 A:920+60 L:980+20"_s);
    Row("negative widths", u"M-9 T-9 A-9/L-9"_s, 1000, u"M:0+50 T:50+50 A:100+900/L:0+1000"_s);
    Row("all break", u"M/T/A/L"_s, 500, u"M:0+500/T:0+500/A:0+500/L:0+500"_s);
    Row("what is not shown takes no place", u"m/T100 a100 L"_s, 1000, u"T:0+100 L:100+900"_s);
    Row("its row stays one", u"M/T/a L"_s, 1000, u"M:0+1000/T:0+1000/L:0+1000"_s);
    Row("nothing is shown", u"m/t/a l"_s, 1000, u""_s);
  }
  void Rows() {
    QFETCH(QString, bands);
    QFETCH(int, width);
    QTEST(Shown(Made(bands), width), "shown");
  }

  // "x=200": the edge of the band; "w=200": its width; "max"; "back", "forth", "up", "down"; "break".
  void Changes_data() {
    Columns<QString, QString, QString, QString>("bands", "band", "change", "shown");
    const QString row = u"M300 T200 A100 L100"_s;
    const QString same = u"M:0+300 T:300+200 A:500+100 L:600+400"_s;
    Row("edge back", row, u"T"_s, u"x=250"_s, u"M:0+250 T:250+250 A:500+100 L:600+400"_s);
    Row("edge back to the least of all before", row, u"A"_s, u"x=-500"_s, u"M:0+50 T:50+50 A:100+500 L:600+400"_s);
    Row("edge back, the nearest gives first", row, u"A"_s, u"x=300"_s, u"M:0+250 T:250+50 A:300+300 L:600+400"_s);
    Row("edge forth", row, u"T"_s, u"x=400"_s, u"M:0+400 T:400+100 A:500+100 L:600+400"_s);
    Row("edge forth, the nearest gives first", row, u"T"_s, u"x=480"_s, u"M:0+480 T:480+50 A:530+70 L:600+400"_s);
    Row("edge forth to the least of all behind", row, u"T"_s, u"x=5000"_s, u"M:0+870 T:870+50 A:920+60 L:980+20"_s);
    Row("the first has no edge to move", row, u"M"_s, u"x=50"_s, same);
    Row("not moved at all", row, u"T"_s, u"x=300"_s, same);
    Row("what is not shown", u"M/t A/L"_s, u"T"_s, u"x=50"_s, u"M:0+1000/A:0+1000/L:0+1000"_s);
    Row("wider", row, u"T"_s, u"w=260"_s, u"M:0+300 T:300+260 A:560+60 L:620+380"_s);
    Row("narrower", row, u"T"_s, u"w=100"_s, u"M:0+300 T:300+100 A:400+200 L:600+400"_s);
    Row("the last wider", row, u"L"_s, u"w=420"_s, u"M:0+300 T:300+200 A:500+80 L:580+420"_s);
    Row("as narrow as can be", row, u"T"_s, u"w=0"_s, u"M:0+300 T:300+50 A:350+250 L:600+400"_s);
    Row("wider where those behind give no more", u"M300 T640 A60/L"_s, u"T"_s, u"w=656"_s,
        u"M:0+284 T:284+656 A:940+60/L:0+1000"_s);
    Row("alone", u"M/T A L"_s, u"M"_s, u"w=100"_s, u"M:0+1000/T:0+648 A:648+332 L:980+20"_s);
    Row("largest", row, u"A"_s, u"max"_s, u"M:0+50 T:50+50 A:100+880 L:980+20"_s);
    Row("largest, the last", row, u"L"_s, u"max"_s, u"M:0+50 T:50+50 A:100+60 L:160+840"_s);
    Row("forth", row, u"M"_s, u"forth"_s, u"T:0+200 M:200+300 A:500+100 L:600+400"_s);
    Row("back", row, u"A"_s, u"back"_s, u"M:0+300 A:300+100 T:400+200 L:600+400"_s);
    Row("back at the beginning", row, u"M"_s, u"back"_s, same);
    Row("forth at the end", row, u"L"_s, u"forth"_s, same);
    Row("past what is not shown", u"M300 t200 A100 L100"_s, u"A"_s, u"back"_s, u"A:0+100 M:100+300 L:400+600"_s);
    Row("up", u"M/T/A L"_s, u"T"_s, u"up"_s, u"M:0+648 T:648+352/A:0+484 L:484+516"_s);
    Row("down", u"M/T/A L"_s, u"T"_s, u"down"_s, u"M:0+1000/A:0+484 L:484+162 T:646+354"_s);
    Row("up from the top", row, u"A"_s, u"up"_s, u"A:0+1000/M:0+300 T:300+200 L:500+500"_s);
    Row("down from the bottom", row, u"M"_s, u"down"_s, u"T:0+200 A:200+100 L:300+700/M:0+1000"_s);
    Row("alone at the top", u"M/T A L"_s, u"M"_s, u"up"_s, u"M:0+1000/T:0+648 A:648+332 L:980+20"_s);
    Row("alone at the bottom", u"T A L/M"_s, u"M"_s, u"down"_s, u"T:0+648 A:648+332 L:980+20/M:0+1000"_s);
    Row("break", row, u"A"_s, u"break"_s, u"M:0+300 T:300+700/A:0+100 L:100+900"_s);
    Row("no break", u"M300/T200 A/L"_s, u"T"_s, u"break"_s, u"M:0+300 T:300+200 A:500+500/L:0+1000"_s);
    Row("no break at the top", u"M300/T/A L"_s, u"M"_s, u"break"_s, u"M:0+1000/T:0+1000/A:0+484 L:484+516"_s);
    Row("no break below what is not shown", u"m/t A/L"_s, u"A"_s, u"break"_s, u"A:0+1000/L:0+1000"_s);
    Row("no break past a row that is not shown", u"M300/t/A100 L"_s, u"A"_s, u"break"_s,
        u"M:0+300 A:300+100 L:400+600"_s);
  }
  void Changes() {
    QFETCH(QString, bands);
    QFETCH(QString, band);
    QFETCH(QString, change);
    QFETCH(QString, shown);
    TBandArrangement made = Made(bands);
    const TBandArrangement before = made;
    const TBand which = BandOf(band.front());
    const QStringList steps{u"back"_s, u"forth"_s, u"up"_s, u"down"_s};
    bool isChanged = false;
    if (change.startsWith(u"x="_s)) {
      isChanged = made.MoveEdge(which, change.mid(2).toInt(), BarWidth);
    } else if (change.startsWith(u"w="_s)) {
      isChanged = made.Resize(which, change.mid(2).toInt(), BarWidth);
    } else if (change == u"max"_s) {
      isChanged = made.Maximize(which, BarWidth);
    } else if (change == u"break"_s) {
      isChanged = made.ToggleBreak(which);
    } else {
      QVERIFY(steps.contains(change));
      isChanged = made.Step(which, static_cast<TBandStep>(steps.indexOf(change)), BarWidth);
    }
    QCOMPARE(Shown(made), shown);
    QCOMPARE(isChanged, !made.IsLike(before));
    QCOMPARE(isChanged, Shown(before) != shown);
  }

  // Rows of 20 pixels; the drop as "A<" before, "A>" after, "A^" above and "Av" below.
  void Drops_data() {
    Columns<QString, QString, int, int, QString, QString>("bands", "band", "x", "y", "drop", "order");
    const QString two = u"M300 T200/A400 L100"_s;
    Row("its own place", two, u"T"_s, 400, 10, u""_s, u"MT/AL"_s);
    Row("past the middle of the one before", two, u"T"_s, 140, 10, u"M<"_s, u"TM/AL"_s);
    Row("past the middle of the one behind", two, u"M"_s, 700, 10, u"T>"_s, u"TM/AL"_s);
    Row("into a row, at its beginning", two, u"M"_s, 100, 30, u"A<"_s, u"T/MAL"_s);
    Row("into a row, between", two, u"M"_s, 300, 30, u"A>"_s, u"T/AML"_s);
    Row("into a row, at its end", two, u"M"_s, 990, 30, u"L>"_s, u"T/ALM"_s);
    Row("above all", two, u"L"_s, 500, -1, u"M^"_s, u"L/MT/A"_s);
    Row("above all, the first", two, u"M"_s, 500, -1, u"T^"_s, u"M/T/AL"_s);
    Row("below all", two, u"M"_s, 500, 40, u"Av"_s, u"T/AL/M"_s);
    Row("between the rows, from above", two, u"T"_s, 500, 21, u"A^"_s, u"M/T/AL"_s);
    Row("between the rows, from below", two, u"A"_s, 500, 19, u"Mv"_s, u"MT/A/L"_s);
    Row("its own row has no edges", two, u"A"_s, 100, 21, u""_s, u"MT/AL"_s);
    Row("alone, below all", u"M T A/L"_s, u"L"_s, 500, 90, u""_s, u"MTA/L"_s);
    Row("alone, above all", u"M/T A L"_s, u"M"_s, 500, -90, u""_s, u"M/TAL"_s);
    Row("alone, beside its row", u"M/T/A L"_s, u"T"_s, 500, 19, u""_s, u"M/T/AL"_s);
    Row("alone, in its row", u"M/T/A L"_s, u"T"_s, 900, 30, u""_s, u"M/T/AL"_s);
  }
  void Drops() {
    QFETCH(QString, bands);
    QFETCH(QString, band);
    QFETCH(int, x);
    QFETCH(int, y);
    TBandArrangement made = Made(bands);
    const auto rows = made.Rows(BarWidth);
    std::vector<int> bottoms;
    for (size_t i = 1; i <= rows.size(); ++i) bottoms.push_back(20 * int(i));
    const TBandDrop drop = FindBandDrop(rows, bottoms, BandOf(band.front()), x, y);
    QString text;
    if (drop.kind == TBandDrop::TKind::Beside) text = LetterOf(drop.other) + (drop.after ? u">"_s : u"<"_s);
    if (drop.kind == TBandDrop::TKind::OwnRow) text = LetterOf(drop.other) + (drop.after ? u"v"_s : u"^"_s);
    QTEST(text, "drop");
    QCOMPARE(made.Put(BandOf(band.front()), drop, BarWidth), !text.isEmpty());
    QTEST(Order(made), "order");
  }

  // Where a row was too long for the bar, a new one comes where it broke.
  void NewRowWithinATooLongOne() {
    TBandArrangement bands = Made(u"M T A L"_s);
    QCOMPARE(Shown(bands, 110), u"M:0+60 T:60+50/A:0+90 L:90+20"_s);
    QVERIFY(bands.Put(TBand::Menu, {TBandDrop::TKind::OwnRow, TBand::Tool, true}, 110));
    QCOMPARE(Order(bands), u"T/M/AL"_s);
    // A band that is not shown stays with its row.
    bands = Made(u"M/t A L"_s);
    QVERIFY(bands.Put(TBand::Links, {TBandDrop::TKind::OwnRow, TBand::Address, false}, BarWidth));
    QCOMPARE(Order(bands), u"M/L/TA"_s);
  }

  // "0:Name=Links,Width=5,Break=1; …": what stands below the keys of the positions.
  void Stored_data() {
    Columns<QString, QString, QList<int>>("stored", "order", "widths");
    const QList<int> widths{648, 648, 484, 162};
    Row("nothing", QString(), u"M/T/AL"_s, widths);
    Row("as it is at first", u"0:Name=Menu; 1:Name=Tool; 2:Name=Address; 3:Name=Links"_s, u"M/T/AL"_s, widths);
    Row("only the links", u"0:Name=Links,Width=30,Break=0"_s, u"LM/T/A"_s, QList<int>{648, 648, 484, 30});
    Row("turned round",
        u"0:Name=Links,Width=1,Break=0; 1:Name=Address,Width=2,Break=1; "
        "2:Name=Tool,Width=3,Break=0; 3:Name=Menu,Width=4,Break=1"_s,
        u"L/AT/M"_s, QList<int>{4, 3, 2, 1});
    Row("a gap", u"0:Name=Tool,Break=0; 3:Name=Menu,Break=1"_s, u"T/AL/M"_s, widths);
    Row("one twice", u"0:Name=Tool,Width=1,Break=0; 1:Name=Tool,Width=2,Break=1"_s, u"M/T/AL"_s,
        QList<int>{648, 2, 484, 162});
    Row("one four times", u"0:Name=Menu; 1:Name=Menu; 2:Name=Menu; 3:Name=Menu"_s, u"/T/ALM"_s, widths);
    Row("unknown names", u"0:Name=links; 1:Name=Status; 2:Name=; 3:Width=5"_s, u"M/T/AL"_s, widths);
    Row("no width, no break", u"0:Name=Address"_s, u"/AM/TL"_s, widths);
    Row("none, and a huge one", u"0:Name=Menu,Width=0; 1:Name=Tool,Width=100000"_s, u"M/T/AL"_s,
        QList<int>{0, TBandArrangement::LargestWidth, 484, 162});
    Row("beyond all numbers", u"0:Name=Menu,Width=-7; 1:Name=Tool,Width=99999999999"_s, u"M/T/AL"_s,
        QList<int>{0, TBandArrangement::LargestWidth, 484, 162});
    Row("no numbers", u"0:Name=Menu,Width=wide,Break=yes"_s, u"M/T/AL"_s, widths);
    Row("all break", u"0:Name=Menu,Break=1; 1:Name=Tool,Break=1; 2:Name=Address,Break=7; 3:Name=Links,Break=1"_s,
        u"/M/T/A/L"_s, widths);
  }
  void Stored() {
    QFETCH(QString, stored);
    QFETCH(QList<int>, widths);
    QTemporaryDir folder;
    TRegistryStore store(folder.filePath(u"registry.sqlite"_s));
    for (const QString &band : stored.split(u"; "_s, Qt::SkipEmptyParts)) {
      for (const QString &value : band.section(u':', 1).split(u',')) {
        const QString name = value.section(u'=', 0, 0);
        const QString data = value.section(u'=', 1);
        bool isNumber = false;
        const qint64 number = data.toLongLong(&isNumber);
        isNumber ? store.WriteInteger(Hive, KeyOf(band.section(u':', 0, 0)), name, number)
                 : store.Write(Hive, KeyOf(band.section(u':', 0, 0)), name, data);
      }
    }
    TBandStore bands(store);
    const TBandArrangement loaded = bands.Load();
    QTEST(Order(loaded), "order");
    for (const TBandRow &row : BandRows) QCOMPARE(loaded.Width(row.band), widths.at(static_cast<int>(row.band)));

    // What is saved is loaded again, with a key for each position and nothing else.
    store.Write(Hive, KeyOf(u"9"_s), u"Name"_s, u"Menu"_s);
    bands.Save(loaded);
    QVERIFY(TBandStore(store).Load().IsLike(loaded));
    QCOMPARE(store.Subkeys(Hive, QString::fromLatin1(RegistryKey::Bands)).size(), BandCount);
  }

  void SavedAsAgreed() {
    QTemporaryDir folder;
    TRegistryStore store(folder.filePath(u"registry.sqlite"_s));
    TBandStore bands(store);
    TBandArrangement changed = bands.Load();
    changed.MoveTo(TBand::Links, 0);
    changed.SetBreak(TBand::Menu, true);
    bands.Save(changed);
    const QList<TRegistryValue> links{
        {u"Name"_s, u"Links"_s, false}, {u"Width"_s, u"162"_s, true}, {u"Break"_s, u"0"_s, true}};
    const QList<TRegistryValue> menu{
        {u"Name"_s, u"Menu"_s, false}, {u"Width"_s, u"648"_s, true}, {u"Break"_s, u"1"_s, true}};
    QCOMPARE(store.Values(Hive, KeyOf(u"0"_s)), links);
    QCOMPARE(store.Values(Hive, KeyOf(u"1"_s)), menu);
  }

  // What could not be read is not written over.
  void UnreadArrangementStays() {
    QTemporaryDir folder;
    const QString path = folder.filePath(u"registry.sqlite"_s);
    TBandArrangement changed;
    changed.MoveTo(TBand::Links, 0);
    {
      TRegistryStore store(path);
      TBandStore(store).Save(changed);
    }
    auto lock = std::make_unique<TStoreLock>(path, TStoreLock::TKind::Unreadable);
    TRegistryStore store(path);
    TBandStore bands(store);
    const TBandArrangement unread = bands.Load();
    QVERIFY(unread.IsLike(TBandArrangement()));
    bands.Save(unread);
    lock.reset();
    QVERIFY(store.Flush(5000));
    QVERIFY(TBandStore(store).Load().IsLike(changed));
  }

  // Two windows: the one that has changed nothing leaves the other's arrangement alone.
  void AnotherWindowsArrangementStays() {
    QTemporaryDir folder;
    TRegistryStore store(folder.filePath(u"registry.sqlite"_s));
    TBandStore ours(store);
    TBandStore theirs(store);
    TBandArrangement bands = ours.Load();
    TBandArrangement changed = theirs.Load();
    changed.MoveTo(TBand::Links, 0);
    theirs.Save(changed);
    ours.Save(bands);
    QVERIFY(TBandStore(store).Load().IsLike(changed));
    bands.MoveTo(TBand::Tool, 0);
    ours.Save(bands);
    QVERIFY(TBandStore(store).Load().IsLike(bands));
  }

 private:
  static constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;

  static QString KeyOf(const QString &position) {
    return QString::fromLatin1(RegistryKey::Bands) + u"\\Band"_s + position;
  }
};

QTEST_GUILESS_MAIN(TestBandArrangement)
#include "test_band_arrangement.moc"
