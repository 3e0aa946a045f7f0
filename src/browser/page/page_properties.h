#pragma once

#include <QString>

#include "browser/page/encryption_level.h"

// What Properties shows and what a page's security state is derived from.
struct TPageProperties {
  QString title;
  QString address;
  QString contentType;
  qint64 size = -1;  // bytes of the document; -1 when not known
  QString modified;  // as the page reports it; empty when unknown
  TEncryptionLevel encryptionLevel = TEncryptionLevel::None;
  QString zone{};       // the name of the security zone; empty when unknown
  QString certificate;  // a readable description; empty when there is none
};
