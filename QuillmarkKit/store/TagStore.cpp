#include "QuillmarkKit/store/TagStore.h"

#include <utility>

namespace QuillmarkKit {

namespace {

/// An edit that uses only the store's `read` and `write`.
class PlainEdit : public TagEdit {
 public:
  PlainEdit(const TagStore& store, std::filesystem::path file)
      : store_(store), file_(std::move(file)), current_(store.read(file_)) {}

  const TagSet& current() const override { return current_; }
  bool isNeeded(const TagChange& change) const override { return change.tags != current_; }
  Plan plan(const TagChange& change, bool) override {
    planned_ = change.tags;
    return {};
  }
  std::string commit() override {
    store_.write(planned_, file_);
    return {};
  }

 private:
  const TagStore& store_;
  std::filesystem::path file_;
  TagSet current_;
  TagSet planned_;
};

}  // namespace

std::unique_ptr<TagEdit> TagStore::edit(const std::filesystem::path& file, platform::ReplacementRun&) const {
  return std::make_unique<PlainEdit>(*this, file);
}

TagStore::Source TagStore::source(const std::filesystem::path& from, TagFields, bool, bool) const {
  return {.tags = read(from)};
}

TagSet TagStore::accepted(const TagSet& tags, TagFields) const {
  return tags;
}

}  // namespace QuillmarkKit
