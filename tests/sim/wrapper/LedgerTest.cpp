// Misuse of host objects is recorded; every test of the plug-in relies on it.
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXText.h>
#include <gtest/gtest.h>

#include "wrapper/Host.h"

namespace {

TEST(Ledger, NamesMisuseAndSurvivesIt) {
  fmx::_fmxcpt x;
  {
    const wrapper::Scope plugin("Twice.fmx");
    fmx::Text* text = fmx::FM_Text_Constructor1(x);
    fmx::FM_Text_Delete(text, x);
    fmx::FM_Text_Delete(text, x);
    fmx::_fmxcpt afterDeath;
    EXPECT_EQ(fmx::FM_Text_GetSize(text, afterDeath), 0u);
    EXPECT_EQ(afterDeath.m_code, fmx::_fmxcpt::kUnknown);
    const fmx::DataUniquePtr data;
    fmx::FM_Text_Delete(const_cast<fmx::Text*>(&data->GetAsText()), x);
    EXPECT_EQ(data->GetAsText().GetSize(), 0u) << "the value's own text is still there";
    fmx::_fmxcpt wrongKind;
    fmx::FM_Text_GetSize(data.get(), wrongKind);
  }
  EXPECT_EQ(wrapper::Violations(),
            (std::vector<std::string>{"Twice.fmx: FM_Text_Delete: not a live Text (deleted twice?)",
                                      "Twice.fmx: FM_Text_GetSize: not a live Text",
                                      "Twice.fmx: FM_Text_Delete: a Text that belongs to another object",
                                      "Twice.fmx: FM_Text_GetSize: not a live Text"}));
  wrapper::ForgetViolations();
}

}  // namespace
