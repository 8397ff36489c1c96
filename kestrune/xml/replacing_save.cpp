#include "kestrune/xml/replacing_save.h"

#include "kestrune/errors/result_text.h"
#include "kestrune/platform/file_saving.h"
#include "kestrune/platform/system_text.h"

namespace {

/// Bytes that a program gives.
class GivenText final : public kestrune::platform::SavedText {
public:
  explicit GivenText(std::string_view bytes) : m_bytes(bytes) {}
  std::uint64_t size() const override { return m_bytes.size(); }
  void writeTo(kestrune::platform::FileOutput &file) const override { file.append(m_bytes); }

private:
  std::string_view m_bytes;
};

} // namespace

long kestrune::SaveReplacing(CXMLFolder &folder, const char *name, const char *base, bool overwrite) {
  const platform::SaveWayScope scope(platform::SaveWay::kReplacing);
  return folder.SaveToFile(name, base, overwrite);
}

long kestrune::ReplaceFile(const char *path, std::string_view text, std::string *reason) {
  if (path == nullptr || *path == '\0') {
    if (reason != nullptr)
      *reason = ResultText(KRX_E_SAVE_NOT_NAMED);
    return KRX_E_SAVE_NOT_NAMED;
  }
  const platform::SaveWayScope scope(platform::SaveWay::kReplacing);
  const int error = platform::SaveFile(path, GivenText(text));
  if (reason != nullptr)
    *reason = error != 0 ? platform::SystemText(error) : std::string();
  return error != 0 ? KRX_E_SAVE_FAILED : S_OK;
}
