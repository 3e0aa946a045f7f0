// Input: what an update server answers.

#include <QUrl>

#include "require.h"
#include "services/version_exchange.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QString text = Fuzz::Text(Fuzz::Input(data, size));
  const TVersionAnswer answer = TVersionAnswer::Read(text);
  REQUIRE(answer.version.size() <= TVersionAnswer::LongestVersion && answer.version.simplified() == answer.version);
  REQUIRE(!answer.version.contains(QChar(0)) && !answer.version.contains(QChar(0x202E)));
  if (!answer.address.isEmpty()) {
    const QUrl url(answer.address, QUrl::StrictMode);
    REQUIRE(url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty());
    REQUIRE(url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https"));
  }
  REQUIRE(!answer.isCounted || text.contains(QStringLiteral("PONG=TRUE")));
  // What came out is as it would have been written properly.
  const QString written = QStringLiteral("PONG=%1\nVERSION=%2\nVERURL=%3\nVERID=%4\n")
                              .arg(answer.isCounted ? QStringLiteral("TRUE") : QString(), answer.version,
                                   answer.address, QString::number(answer.id));
  REQUIRE(TVersionAnswer::Read(written) == answer);
  return 0;
}
