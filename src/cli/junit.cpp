#include "cli/junit.h"

#include <pugixml.hpp>

#include <algorithm>
#include <sstream>

namespace varda::cli {

std::size_t failures(const std::vector<LineResult>& results) {
    return static_cast<std::size_t>(
        std::ranges::count_if(results, [](const LineResult& result) { return !result.why.empty(); }));
}

std::string junit(const std::string& suite, const std::vector<LineResult>& results) {
    pugi::xml_document document;
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node node = document.append_child("testsuites").append_child("testsuite");
    node.append_attribute("name") = suite.c_str();
    node.append_attribute("tests") = static_cast<unsigned long long>(results.size());
    node.append_attribute("failures") = static_cast<unsigned long long>(failures(results));
    for (const LineResult& result : results) {
        pugi::xml_node test = node.append_child("testcase");
        const std::string name =
            "round " + std::to_string(result.round) + ", line " + std::to_string(result.line);
        test.append_attribute("classname") = result.kind.c_str();
        test.append_attribute("name") = name.c_str();
        test.append_attribute("time") = result.seconds;
        if (!result.why.empty()) {
            test.append_child("failure").append_attribute("message") = result.why.c_str();
        }
    }
    std::ostringstream text;
    document.save(text, "  ");
    return text.str();
}

} // namespace varda::cli
