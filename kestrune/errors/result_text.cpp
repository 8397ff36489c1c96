#include "kestrune/errors/result_text.h"

#include <algorithm>
#include <iterator>

namespace {

struct Result {
  long code;
  const char *name;
  const char *text;
};

constexpr Result kResults[] = {
    {S_OK, "S_OK", "success"},
    {KRX_S_NO_ATTRIBUTE, "KRX_S_NO_ATTRIBUTE", "the file lacks the attribute that was read last; it keeps its text"},
    {KRX_S_NO_ELEMENT, "KRX_S_NO_ELEMENT", "the file lacks the element that was read last; it keeps its text"},
    {KRX_S_EMPTY_COLLECTION, "KRX_S_EMPTY_COLLECTION", "the collection that was read last has no item"},
    {KRX_E_COM_CREATE, "KRX_E_COM_CREATE", "no XML document can be made: the thread has not called CoInitialize"},
    {KRX_E_WRITE_PROTECTED, "KRX_E_WRITE_PROTECTED", "the file exists, and overwriting it is not allowed"},
    {KRX_E_FILE_NOT_FOUND, "KRX_E_FILE_NOT_FOUND", "the file does not exist, or is a directory"},
    {KRX_E_UNEXPECTED_DATA, "KRX_E_UNEXPECTED_DATA", "the file cannot be read, or is not well-formed"},
    {KRX_E_SAVE_NOT_NAMED, "KRX_E_SAVE_NOT_NAMED", "there is no name to save under"},
    {KRX_E_LOAD_NOT_NAMED, "KRX_E_LOAD_NOT_NAMED", "the name is empty"},
    {KRX_E_DUPLICATE_KEY, "KRX_E_DUPLICATE_KEY",
     "a key is empty or used twice; the later items with that key are left out"},
    {KRX_E_SAVE_FAILED, "KRX_E_SAVE_FAILED", "a text cannot be saved, or the file cannot be written"},
    {KRX_E_LOAD_EXCEPTION, "KRX_E_LOAD_EXCEPTION", "the texts of nested elements are too large"},
    {KRX_E_WRONG_ROOT_TAG, "KRX_E_WRONG_ROOT_TAG", "the root element is that of another kind of file"},
};

std::string hexadecimal(long code) {
  constexpr const char *kDigits = "0123456789ABCDEF";
  std::string text = "0x";
  for (int shift = 28; shift >= 0; shift -= 4)
    text += kDigits[(kestrune::platform::ResultBits(code) >> static_cast<unsigned>(shift)) & 0xFU];
  return text;
}

std::string column(long code, const char *Result::*column) {
  const auto *const found = std::find_if(std::begin(kResults), std::end(kResults), [&](const Result &result) {
    return kestrune::platform::ResultBits(result.code) == kestrune::platform::ResultBits(code);
  });
  return found != std::end(kResults) ? std::string(found->*column) : hexadecimal(code);
}

} // namespace

std::string kestrune::ResultText(long result) { return column(result, &Result::text); }

std::string kestrune::ResultName(long result) { return column(result, &Result::name); }
