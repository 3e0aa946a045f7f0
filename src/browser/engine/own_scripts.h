#pragma once

#include <initializer_list>
#include <QString>
#include <QWebEngineScript>

class QWebEnginePage;

// The worlds in which scripts run of others than the page. Each costs each frame of each page time and memory.
namespace ScriptWorld {

// What the program's scripts share, where they need nothing of the page's own.
inline constexpr quint32 Own = QWebEngineScript::ApplicationWorld;
inline constexpr quint32 Words = QWebEngineScript::UserWorld + 8;
inline constexpr quint32 HiddenPage = QWebEngineScript::UserWorld + 11;
// The first of the user's scripts is in this one, the others are in those behind it.
inline constexpr quint32 FirstOfUser = QWebEngineScript::UserWorld + 64;

}  // namespace ScriptWorld

// The program's own scripts in pages, by the names of their files among the resources.
namespace OwnScript {

// What is to stand in the script for "{{Name}}".
struct TValue {
  const char *name;
  QString text;
};

// Empty where there is no such file.
[[nodiscard]] QString Source(const char *file, std::initializer_list<TValue> values);

// Has it run before anything else in the documents, and their frames, that the page loads from now on. It belongs to
// the page, since what belongs to the profile does not reach all pages any more once there have been some hundred
// (6.4).
void Insert(QWebEnginePage &page, const char *file, quint32 world, std::initializer_list<TValue> values);
// Takes it out of what the page loads from now on.
void Remove(QWebEnginePage &page, const char *file);
[[nodiscard]] bool IsIn(QWebEnginePage &page, const char *file);

}  // namespace OwnScript
