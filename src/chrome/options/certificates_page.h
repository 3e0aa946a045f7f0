#pragma once

#include "chrome/options/removal_list.h"

class TCertificateExceptions;

// The hosts whose bad certificates are let through in this run. What is taken out is asked about again.
class TCertificatesPage final : public TRemovalList {
  Q_OBJECT

 public:
  // `exceptions` must outlive the page.
  TCertificatesPage(const TLanguage &language, TCertificateExceptions &exceptions, QWidget *parent = nullptr);

  void Write();

 private:
  TCertificateExceptions &m_exceptions;
};
