#include "user_scripts/user_script_file.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace {

constexpr qsizetype MostBlockLines = 2000;

const QRegularExpression BeginForm(QStringLiteral(R"(^\s*//\s*==UserScript==\s*$)"));
const QRegularExpression EndForm(QStringLiteral(R"(^\s*//\s*==/UserScript==\s*$)"));
const QRegularExpression WordForm(QStringLiteral(R"(^\s*//\s*@(\S+)(?:\s+(.*\S))?\s*$)"));

// The lines of the first block, without those around it; they become empty in `lines`. False where there is none.
bool TakeBlock(QStringList &lines, QStringList &block) {
  const qsizetype first = lines.indexOf(BeginForm);
  const qsizetype last = first < 0 ? -1 : lines.indexOf(EndForm, first);
  if (last < 0 || last - first > MostBlockLines) return false;
  block = lines.mid(first + 1, last - first - 1);
  for (qsizetype i = first; i <= last; ++i) lines[i].clear();
  return true;
}

TPageScript::TMoment MomentOf(const QString &word) {
  if (word == QLatin1String("document-start")) return TPageScript::TMoment::Creation;
  return word == QLatin1String("document-end") ? TPageScript::TMoment::Ready : TPageScript::TMoment::Idle;
}

TUserScriptFile Faulty(TScriptTrouble trouble) {
  TUserScriptFile file;
  file.trouble = trouble;
  return file;
}

}  // namespace

TUserScriptFile TUserScriptFile::Parse(const QByteArray &bytes) {
  if (bytes.size() > MostBytes) return Faulty(TScriptTrouble::TooLarge);
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString text = decoder(bytes);
  if (decoder.hasError() || text.contains(QChar::Null)) return Faulty(TScriptTrouble::NotText);
  QStringList lines = text.split(u'\n');
  QStringList block;
  if (!TakeBlock(lines, block)) return Faulty(TScriptTrouble::NoBlock);
  TUserScriptFile file;
  for (const QString &line : std::as_const(block)) {
    const QRegularExpressionMatch parts = WordForm.match(line);
    if (!parts.hasMatch()) continue;
    const QString word = parts.captured(1);
    const QString value = parts.captured(2);
    bool isGood = true;
    if (word == QLatin1String("name") && file.name.isEmpty()) file.name = value;
    if (word == QLatin1String("run-at")) file.moment = MomentOf(value);
    if (word == QLatin1String("noframes")) file.inFrames = false;
    if (word == QLatin1String("match")) isGood = file.includes.AddMatch(value);
    if (word == QLatin1String("include")) isGood = file.includes.AddText(value);
    if (word == QLatin1String("exclude")) isGood = file.excludes.AddText(value);
    if (word == QLatin1String("exclude-match")) isGood = file.excludes.AddMatch(value);
    if (isGood || file.trouble != TScriptTrouble::None) continue;
    file.trouble = TScriptTrouble::BadRule;
    file.badRule = line.trimmed();
  }
  if (file.includes.IsEmpty() && file.trouble == TScriptTrouble::None) file.trouble = TScriptTrouble::NoRule;
  file.source = lines.join(u'\n');
  return file;
}

TUserScriptFile TUserScriptFile::Read(const QString &path) {
  QFile file(path);
  // A pipe or a device may never end.
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return Faulty(TScriptTrouble::Missing);
  return Parse(file.read(MostBytes + 1));
}

bool TUserScriptFile::IsFor(const QUrl &page) const {
  if (trouble != TScriptTrouble::None) return false;
  // What cannot be said of an address in time keeps the script away from it.
  return includes.Hold(page, false) && !excludes.Hold(page, true);
}
