#pragma once

namespace sab {

/// Whether the tests run under Wine, whose MSXML knows no Chinese encodings, reads a DTD and does
/// not tell the place of an error; MSXML itself does as our own reader.
bool RunsUnderWine();

}  // namespace sab
