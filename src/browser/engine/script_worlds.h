#pragma once

#include <QWebEngineScript>

// The worlds that scripts of the program's own have to themselves in pages; others are in the engine's
// ApplicationWorld.
namespace ScriptWorld {

inline constexpr quint32 Words = QWebEngineScript::UserWorld + 8;
inline constexpr quint32 Content = QWebEngineScript::UserWorld + 9;
inline constexpr quint32 Sleep = QWebEngineScript::UserWorld + 10;
inline constexpr quint32 HiddenPage = QWebEngineScript::UserWorld + 11;
// The first of the user's scripts is in this one, the others are in those behind it.
inline constexpr quint32 FirstOfUser = QWebEngineScript::UserWorld + 64;

}  // namespace ScriptWorld
