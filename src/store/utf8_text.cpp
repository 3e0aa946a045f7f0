#include "store/utf8_text.h"

#include <QStringDecoder>

QString TextOfUtf8(QByteArrayView bytes) {
  if (!bytes.startsWith("\xEF\xBB\xBF")) return QString::fromUtf8(bytes);
  QStringDecoder decoder(QStringDecoder::Utf8,
                         QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
  return decoder(bytes);
}
