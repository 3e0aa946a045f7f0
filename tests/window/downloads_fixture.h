#pragma once

#include <memory>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInterceptor>

#include "browser/downloads/download_list.h"
#include "browser/downloads/page_downloads.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "store/registry_store.h"
#include "support/shipped_files.h"
#include "support/test_server.h"

// A list of downloads with a folder of its own to save in, and a page that downloads. The server has /file, which is
// "file.txt" with seven bytes.
class TDownloadsFixture {
 public:
  static constexpr int LongWait = 20000;  // milliseconds; the first page also starts the engine

  void Prepare() { QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void Begin() {
    folder = std::make_unique<QTemporaryDir>();
    server = std::make_unique<TTestServer>();
    QVERIFY(server->Listen());
    server->Route("/file", TTestResponse::Attachment("file.txt", "content"));
    profile = std::make_unique<QWebEngineProfile>();
    store = std::make_unique<TRegistryStore>(In(QStringLiteral("registry.sqlite")));
    QVERIFY(store->Write(TRegistryHive::CurrentUser, key, QStringLiteral("DownloadFolder"), folder->path()));
    MakeList();
    page = std::make_unique<QWebEnginePage>(profile.get());
    page->setUrlRequestInterceptor(&asked);
  }
  void End() {
    const auto reset = [](auto &...owners) { (owners.reset(), ...); };
    reset(page, list, store, profile, server, folder);
  }
  // Anew, as with a start of the program.
  void MakeList() {
    list = std::make_unique<TDownloadList>(*profile, language, *store);
    list->SaveQuestion().SetPause(0);
  }

  [[nodiscard]] QString In(const QString &name) const { return folder->filePath(name); }
  [[nodiscard]] static QByteArray Content(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  [[nodiscard]] QString Text(int row, int role) const { return list->data(list->index(row), role).toString(); }
  [[nodiscard]] QString Status(int row) const { return Text(row, TDownloadList::StatusRole); }
  [[nodiscard]] QString Path(int row) const { return Text(row, TDownloadList::PathRole); }
  // /slow, a big file that arrives slowly, so that there is time to do something to it.
  void RouteSlowFile() {
    TTestResponse response = TTestResponse::Attachment("slow.bin", QByteArray(4 * 1024 * 1024, 's'));
    response.trickleBytes = 32 * 1024;
    server->Route("/slow", response);
  }
  void Download(const QString &path) { page->download(QUrl(server->Url(path))); }

  // Tells what the page asks for, as those of the program do.
  class TAsked final : public QWebEngineUrlRequestInterceptor {
   public:
    explicit TAsked(const std::unique_ptr<QWebEnginePage> &page) : m_page(page) {}
    void interceptRequest(QWebEngineUrlRequestInfo &info) override {
      if (auto *downloads = TPageDownloads::Of(m_page.get())) downloads->NoteAsked(info.requestUrl());
    }

   private:
    const std::unique_ptr<QWebEnginePage> &m_page;
  };

  const QString key = QString::fromLatin1(RegistryKey::CurrentVersion);  // of the settings
  TLanguage language;
  std::unique_ptr<QTemporaryDir> folder;
  std::unique_ptr<TTestServer> server;
  std::unique_ptr<QWebEngineProfile> profile;
  std::unique_ptr<TRegistryStore> store;
  std::unique_ptr<TDownloadList> list;
  std::unique_ptr<QWebEnginePage> page;
  TAsked asked{page};
};
