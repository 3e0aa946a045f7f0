#pragma once

#include <QString>

// The addresses that belong to a deployment, from the shipped file product.ini (section "Addresses" where no other is
// told). An empty address keeps its feature quiet; none is built in.
struct TProductInfo {
  QString defaultHomePage;    // "DefaultHomePage"
  QString startupPage;        // "StartupPage": a format with one "%s"
  QString searchPanelPage;    // "SearchPanelPage"
  QString updateServer;       // "UpdateServer"
  QString annotationService;  // "Service" of section "Annotations"

  // Reads product.ini from the search path of the program's folder; a missing file gives empty addresses.
  [[nodiscard]] static TProductInfo Load();
};
