#include "QuillmarkKit/store/standard/LosslessError.h"

#include "platform/FileError.h"

namespace QuillmarkKit {

namespace {

std::string expecting(std::string_view value) {
  return " (expected " + std::string(value) + ").";
}

}  // namespace

LosslessError LosslessError::cannotKeep(const std::filesystem::path& url, const std::string& what) {
  return LosslessError(platform::lastPathComponent(url) + ": --lossless cannot keep " + what + ".");
}

LosslessError LosslessError::hidesAPETag(const std::filesystem::path& url) {
  return LosslessError(platform::lastPathComponent(url) +
                       ": --lossless cannot keep its APE tag in sight: a new ID3v2 tag would hide it.");
}

LosslessError LosslessError::tagIsNotInFront(const std::filesystem::path& url) {
  return LosslessError(platform::lastPathComponent(url) +
                       ": --lossless cannot keep the data before its ID3v2 tag.");
}

LosslessError LosslessError::cannotRead(const std::filesystem::path& url, const std::string& what) {
  return LosslessError(platform::lastPathComponent(url) + ": --lossless cannot read " + what + ".");
}

LosslessError LosslessError::cannotCarry(const std::filesystem::path& url, const std::string& what,
                                         std::string_view expected) {
  return LosslessError(platform::lastPathComponent(url) + ": --lossless cannot carry its " + what +
                       expecting(expected) + " Leave it out with --fields.");
}

LosslessError LosslessError::cannotCopyTag(const std::filesystem::path& url, const std::string& what) {
  return LosslessError(platform::lastPathComponent(url) + ": --whole-tag needs an undamaged ID3v2 tag, but " +
                       what + ".");
}

LosslessError LosslessError::cannotReplaceTag(const std::filesystem::path& url, const std::string& what) {
  return LosslessError(platform::lastPathComponent(url) +
                       ": --whole-tag does not replace a damaged tag, because " + what + " may be audio.");
}

LosslessError LosslessError::cannotWrite(const std::string& what, std::string_view expected) {
  return LosslessError("--lossless cannot write the " + what + expecting(expected));
}

}  // namespace QuillmarkKit
