#include "config/settings.h"

TSettings::TSettings(TRegistryStore &store, QObject *parent) : QObject(parent), m_options(store) {}
