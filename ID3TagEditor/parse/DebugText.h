#pragma once

#include <string>

#include "ID3TagEditor/model/ID3Tag.h"

namespace ID3TagEditor {

/// Renders a whole tag as a text of many lines, for debugging.
class ID3TagToStringAdapter {
 public:
  std::string adapt(const ID3Tag& id3Tag) const;
};

}  // namespace ID3TagEditor
