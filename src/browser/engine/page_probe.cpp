#include "browser/engine/page_probe.h"

#include <QDateTime>
#include <QLocale>
#include <QVariantMap>

#include "browser/engine/address.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/own_scripts.h"

namespace {

// A page that was sent without a date of its last change reports the present time.
const char ProbeScript[] = R"((() => {
  const load = performance.getEntriesByType('navigation')[0];
  const changed = Date.parse(document.lastModified);
  return {
    type: document.contentType,
    size: load && load.decodedBodySize > 0 ? load.decodedBodySize
                                           : new Blob([document.documentElement.outerHTML]).size,
    modified: Date.now() - changed > 5000 ? new Date(changed).toISOString() : '',
  };
})())";

}  // namespace

void ProbePage(TEnginePage *page, const TLanguage &language, const std::function<void(const TPageProperties &)> &done) {
  TPageProperties properties;
  properties.title = page->title();
  properties.address = AddressOf(page->url());
  properties.encryptionLevel = page->EncryptionLevel();
  properties.certificate = DescribeCertificate(page->Certificate(), language);
  page->runJavaScript(QString::fromLatin1(ProbeScript), ScriptWorld::Own,
                      [properties, done](const QVariant &answer) mutable {
                        const QVariantMap map = answer.toMap();
                        properties.contentType = map.value(QStringLiteral("type")).toString();
                        const QDateTime modified =
                            QDateTime::fromString(map.value(QStringLiteral("modified")).toString(), Qt::ISODateWithMs);
                        if (modified.isValid()) {
                          properties.modified = QLocale().toString(modified.toLocalTime(), QLocale::ShortFormat);
                        }
                        if (map.contains(QStringLiteral("size"))) {
                          properties.size = map.value(QStringLiteral("size")).toLongLong();
                        }
                        done(properties);
                      });
}
