#pragma once

#include <QString>

#include "browser/engine/policy.h"
#include "user_scripts/address_rules.h"

// Why a script does not run.
enum class TScriptTrouble {
  None,
  BadName,   // names no file of the scripts' folder itself
  Missing,   // there is no such file, or it cannot be read
  TooLarge,  // more than TUserScriptFile::MostBytes
  NotText,   // no UTF-8
  NoBlock,   // says nothing about itself
  NoRule,    // says of no page that it is for it
  BadRule,   // names pages in a way that cannot be understood
};

// A user script as it lies in its file: a text in UTF-8 with a block of comments that says what it is for.
//
//   // ==UserScript==
//   // @name     A name
//   // @match    https://*.example.test/*
//   // @include  http://example.test/*
//   // @exclude  /\.pdf$/
//   // @run-at   document-start
//   // ==/UserScript==
//
// It runs on pages that one of its matches or includes holds for and none of its excludes, and in frames that they hold
// for by addresses of their own, unless it says @noframes; as soon as there is a document (document-start), when all of
// it is there (document-end), or a moment later (document-idle, which is also what holds without @run-at). Of several
// names the first counts, and so does the first block. Other words are passed over; words with a language behind them
// ("@name:de") as well.
struct TUserScriptFile {
  static constexpr qint64 MostBytes = 2 * 1024 * 1024;

  [[nodiscard]] static TUserScriptFile Parse(const QByteArray &bytes);
  // Reads the file at `path`, of which no more than it may have. Whatever it is, it has an answer.
  [[nodiscard]] static TUserScriptFile Read(const QString &path);
  [[nodiscard]] bool IsFor(const QUrl &page) const;

  TScriptTrouble trouble = TScriptTrouble::None;
  QString badRule{};
  QString name{};
  // Without the block, whose lines are left empty: the engine would go by it as well.
  QString source{};
  TPageScript::TMoment moment = TPageScript::TMoment::Idle;
  bool inFrames = true;
  TAddressRules includes{};
  TAddressRules excludes{};
};
