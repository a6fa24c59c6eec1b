// dictionary.cpp - the process's set of dictionaries and the functions that applications call.

#include "qxv/dictionary.h"

#include "text/dictionary_set.h"

#include <memory>
#include <utility>

namespace {

constinit std::unique_ptr<CQXVDictionaryRoot> g_root;

}  // namespace

// KEPT: what was loaded is gone before anything is looked at, whether the load succeeds or not.
//   Pinned by DictionaryKept.AFailedLoadLeavesNothingLoaded.
int QXVLoadDictionarys(const CQXString& folder) {
  g_root.reset();
  auto root = std::make_unique<CQXVDictionaryRoot>();
  const qxv::Status status = root->Load(folder);
  if (status == qxv::kStatusOk) {
    g_root = std::move(root);
  }
  return static_cast<int>(status);
}

void QXVReleaseDictionarys() { g_root.reset(); }

CQXString QXVTranslate(const CQXString& text, unsigned int mainId) { return QXVTranslate(text, text, mainId); }

CQXString QXVTranslate(const CQXString& text, const CQXString& defaultText, unsigned int mainId) {
  if (g_root == nullptr) {
    return defaultText;
  }
  const qxv::os::TextView wanted(text, static_cast<std::size_t>(text.GetLength()));
  const auto found = g_root->Translate(wanted, mainId);
  return found ? CQXString(found->data()) : defaultText;
}

int QXVGetMissingTexts(CQXArray<CQXString, CQXString&>& texts) {
  CQXArray<CQXString, CQXString&> missing;
  if (g_root != nullptr) {
    missing.SetSize(static_cast<QXInt64>(g_root->Missing().size()));
    QXInt64 at = 0;
    for (const qxv::os::Text& text : g_root->Missing()) {
      missing[at++] = text.c_str();
    }
  }
  texts = missing;
  return g_root != nullptr ? 1 : 0;
}
