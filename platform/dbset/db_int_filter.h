#pragma once

namespace QvPlatform {

/// The one kind of filter that tables know: an integer field equal to a value.
class TQvDbIntFilter {
 public:
  /// How the field's content is compared with the value.
  enum TFilterOp { kEqual = 1 };
};

}  // namespace QvPlatform
