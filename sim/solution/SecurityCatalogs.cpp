// Accounts and privileges of an export, and what its file does on opening.
#include <string_view>

#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

/// Versions differ in the element's name and in whether the text is marked as insecure.
std::u16string AccountName(solution::XmlNode parent) {
  solution::XmlNode name = parent.child("AccountName");
  if (!name) name = parent.child("UserName");
  const solution::XmlNode insecure = name.child("INSECURE_TEXT");
  return xml::Text(insecure ? insecure : name);
}

void GrantToSets(solution::XmlNode extendedPrivilege, std::vector<PrivilegeSet>& sets) {
  for (const solution::XmlNode reference : extendedPrivilege.child("ObjectList").children("PrivilegeSetReference")) {
    for (PrivilegeSet& set : sets) {
      if (set.id == xml::Id(reference)) set.extendedPrivileges.push_back(xml::Name(extendedPrivilege));
    }
  }
}

}  // namespace

void ReadSecurity(solution::XmlNode design, Solution& solution) {
  for (const solution::XmlNode element :
       xml::Entries(design.child("PrivilegeSetsCatalog").child("ObjectList"), "PrivilegeSet")) {
    PrivilegeSet& set = solution.privilegeSets.emplace_back();
    set.id = xml::Id(element);
    set.name = xml::Name(element);
  }
  for (const solution::XmlNode element :
       design.child("ExtendedPrivilegesCatalog").child("ObjectList").children("ExtendedPrivilege")) {
    GrantToSets(element, solution.privilegeSets);
  }
  for (const solution::XmlNode element : xml::Entries(design.child("AccountsCatalog").child("ObjectList"), "Account")) {
    Account& account = solution.accounts.emplace_back();
    account.id = xml::Id(element);
    account.name = AccountName(element.child("Authentication"));
    account.enabled = element.attribute("enable").value() != "False"sv;
    account.privilegeSetId = xml::ReferencedId(element, "PrivilegeSetReference");
  }
}

void ReadOpening(solution::XmlNode options, Solution& solution) {
  const solution::XmlNode login = options.child("Login");
  if (login.attribute("type").value() == "1"sv) solution.autoLoginAccount = AccountName(login);
  const solution::XmlNode layout = options.child("Defaults").child("LayoutReference");
  if (layout) solution.startLayoutId = xml::Id(layout);
}

}  // namespace sim
