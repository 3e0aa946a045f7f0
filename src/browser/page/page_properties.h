#pragma once

#include <QString>

// What Properties shows and what a page's security state is derived from.
struct TPageProperties {
  QString title;
  QString address;
  QString contentType;
  qint64 size = -1;         // bytes of the document; -1 when not known
  QString modified;         // as the page reports it; empty when unknown
  int encryptionLevel = 0;  // 0 none, 1 mixed content, 2 accepted certificate error, 6 secure
  QString certificate;      // a readable description; empty when there is none
};
