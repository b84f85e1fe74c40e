#include "ID3TagEditor/create/StringToBytesAdapters.h"

#include <optional>

#include "platform/base/Strings.h"

namespace ID3TagEditor {

using platform::Bytes;

Bytes utf16(std::string_view text) {
  return platform::Strings::toUTF16WithMark(text).value_or(Bytes());
}

Bytes ID3UTF16StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  Bytes body{frameConfiguration_.encodingByteFor(version, ID3StringEncoding::UTF16)};
  platform::append(body, utf16(string));
  paddingAdder_->addPaddingTo(body, 2);
  return body;
}

Bytes ID3ISO88591StringToByteAdapter::adapt(std::string_view string, ID3Version version) const {
  const std::optional<Bytes> text = platform::Strings::toLatin1(string);
  if (!text) {
    return ID3UTF16StringToByteAdapter(std::make_unique<PaddingAdderToEndOfContentUsingNullChar>())
        .adapt(string, version);
  }
  Bytes body{frameConfiguration_.encodingByteFor(version, ID3StringEncoding::ISO88591)};
  platform::append(body, *text);
  paddingAdder_->addPaddingTo(body, 1);
  return body;
}

}  // namespace ID3TagEditor
