#pragma once

// What nearly every source of the browser needs, compiled once. The floors above do without the engine's headers.
#include <QtWidgets/QtWidgets>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>
