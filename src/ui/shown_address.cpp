#include "ui/shown_address.h"

#include <unicode/uidna.h>
#include <unicode/uset.h>
#include <unicode/uspoof.h>
#include <QUrl>

namespace {

constexpr QLatin1String AcePrefix("xn--");
constexpr int LongestLabel = 256;  // code units; the ASCII form has 63 at the most, and none of them stands for more

// What Unicode's rules say of host names (UTS 46) and of letters that are mistaken for others (UTS 39). Made when the
// first international name is shown, which takes some milliseconds.
class TNameRules final {
 public:
  static const TNameRules &Instance() {
    static const TNameRules rules;
    return rules;
  }

  // The label in its own letters; empty when it is no valid one, or none but ASCII letters.
  [[nodiscard]] QString OwnLetters(const QString &label) const {
    char16_t letters[LongestLabel];
    UErrorCode status = m_status;
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    const int length = uidna_labelToUnicode(m_names.getAlias(), QStringView(label).utf16(), int(label.size()), letters,
                                            LongestLabel, &info, &status);
    return U_SUCCESS(status) && info.errors == 0 ? QString::fromUtf16(letters, length) : QString();
  }

  // True when it holds only characters for names, of scripts that are written together.
  [[nodiscard]] bool IsOfOneWriting(const QString &label) const {
    UErrorCode status = m_status;
    const int found =
        uspoof_check2(m_spoof.getAlias(), QStringView(label).utf16(), int(label.size()), nullptr, &status);
    return U_SUCCESS(status) && found == 0;
  }

  // True for a character that people read as another one, of ASCII.
  [[nodiscard]] bool PassesForAscii(char32_t c) const {
    char16_t looks[32];
    UErrorCode status = m_status;
    const auto letter = QChar::fromUcs4(c);
    const QStringView text = letter;
    const int length = uspoof_getSkeleton(m_spoof.getAlias(), 0, text.utf16(), int(text.size()), looks,
                                          int(std::size(looks)), &status);
    return U_SUCCESS(status) && length == 1 && looks[0] < 0x80;
  }

 private:
  TNameRules() {
    m_names.adoptInstead(uidna_openUTS46(UIDNA_USE_STD3_RULES | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ |
                                             UIDNA_CHECK_CONTEXTO | UIDNA_NONTRANSITIONAL_TO_UNICODE,
                                         &m_status));
    m_spoof.adoptInstead(uspoof_open(&m_status));
    // Letters, marks and digits of living languages, and three signs that stand between them. What else may be part of
    // a name cannot be seen, or is some sign of punctuation.
    const icu::LocalUSetPointer allowed(uset_openEmpty());
    uset_addAll(allowed.getAlias(), uspoof_getRecommendedSet(&m_status));
    for (const char32_t sign : {U'-', U'\u00B7', U'\u30FB'}) uset_add(allowed.getAlias(), int(sign));
    uspoof_setAllowedChars(m_spoof.getAlias(), allowed.getAlias(), &m_status);
    uspoof_setRestrictionLevel(m_spoof.getAlias(), USPOOF_HIGHLY_RESTRICTIVE);
  }

  icu::LocalUIDNAPointer m_names;
  icu::LocalUSpoofCheckerPointer m_spoof;
  UErrorCode m_status = U_ZERO_ERROR;  // after a failure every name stays in ASCII
};

bool IsAsciiLetter(char32_t c) {
  return c >= U'a' && c <= U'z';
}

bool IsLatin(char32_t c) {
  return c < 0x80 || QChar::script(c) == QChar::Script_Latin;
}

// A mark upon a Latin letter, where the two are no letter of their own, is easily overlooked; beside a Latin letter
// some Japanese characters pass for a dot, a slash or a dash.
bool IsAtHome(const QList<uint> &characters, qsizetype place) {
  constexpr QStringView LooksLikeSign = u"\u30FB\u30FCノソンヘへ一丶丿〻";
  const char32_t c = characters[place];
  const bool followsLatin = place > 0 && IsLatin(characters[place - 1]);
  const bool precedesLatin = place + 1 < characters.size() && IsLatin(characters[place + 1]);
  if (QChar::isMark(c)) return !followsLatin;
  if (c > 0xFFFF || !LooksLikeSign.contains(QChar(char16_t(c)))) return true;
  return !followsLatin && !precedesLatin;
}

// True when a label of a host name (the part between two dots) may be shown in its own letters.
bool IsHonestLabel(const QString &label) {
  const TNameRules &rules = TNameRules::Instance();
  if (!rules.IsOfOneWriting(label)) return false;
  bool hasAsciiLetter = false;
  bool hasMask = false;
  bool hasOwnShape = false;
  const QList<uint> characters = label.toUcs4();
  for (qsizetype place = 0; place < characters.size(); ++place) {
    const char32_t c = characters[place];
    if (c < 0x80) {
      hasAsciiLetter |= IsAsciiLetter(c);
      continue;
    }
    if (!IsAtHome(characters, place)) return false;
    const bool isMask = rules.PassesForAscii(c);
    hasMask |= isMask;
    hasOwnShape |= QChar::isLetter(c) && !isMask;
  }
  return hasAsciiLetter ? !hasMask : hasOwnShape;
}

}  // namespace

QString ShownHost(const QString &host) {
  QStringList labels = host.split(u'.');
  for (QString &label : labels) {
    if (!label.startsWith(AcePrefix)) continue;
    const QString own = TNameRules::Instance().OwnLetters(label);
    if (IsHonestLabel(own)) label = own;
  }
  return labels.join(u'.');
}

QString ShownAddress(const QString &address) {
  if (address == QLatin1String("about:blank")) return {};
  if (!address.contains(AcePrefix, Qt::CaseInsensitive)) return address;
  const QUrl url(address);
  const QString ace = url.host(QUrl::FullyEncoded);
  // The host is replaced in the text, so that nothing else of the address changes its spelling.
  const qsizetype start = address.indexOf(QLatin1String("://")) + 3;
  const qsizetype place = ace.isEmpty() ? -1 : address.indexOf(ace, start);
  if (place < 0) return address;
  QString shown = address;
  shown.replace(place, ace.size(), ShownHost(ace));
  return QUrl(shown) == url ? shown : address;
}
