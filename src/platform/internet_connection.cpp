#include "platform/internet_connection.h"

#include <QNetworkInformation>

bool HasInternetConnection() {
  using TReach = QNetworkInformation::Reachability;
  if (!QNetworkInformation::loadDefaultBackend()) return true;
  const TReach reach = QNetworkInformation::instance()->reachability();
  return reach == TReach::Online || reach == TReach::Unknown;
}
