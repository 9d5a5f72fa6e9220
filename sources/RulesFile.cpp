#include "RulesFile.h"

#include <yaml.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>

namespace kelvar_sources {

namespace {

using K = sitenotes::annotation_t;

/// A parsed YAML document.
class Document {
 public:
  explicit Document(std::string_view text) {
    yaml_parser_t parser;
    if (yaml_parser_initialize(&parser) == 0) throw std::bad_alloc();
    yaml_parser_set_input_string(&parser, reinterpret_cast<const unsigned char*>(text.data()), text.size());
    const bool read = yaml_parser_load(&parser, &document_) != 0;
    const std::size_t line = parser.problem_mark.line + 1;
    const std::string problem = parser.problem != nullptr ? parser.problem : "unreadable";
    yaml_parser_delete(&parser);
    if (!read) throw RulesError("line " + std::to_string(line) + ": expected YAML (" + problem + ")");
  }
  ~Document() { yaml_document_delete(&document_); }
  Document(const Document&) = delete;  // owns the parser's document
  Document& operator=(const Document&) = delete;

  [[nodiscard]] yaml_node_t* root() { return yaml_document_get_root_node(&document_); }
  [[nodiscard]] yaml_node_t* node(int index) { return yaml_document_get_node(&document_, index); }

 private:
  yaml_document_t document_{};
};

[[noreturn]] void refuse(const yaml_node_t& node, const std::string& expected) {
  throw RulesError("line " + std::to_string(node.start_mark.line + 1) + ": expected " + expected);
}

std::string textOf(const yaml_node_t& node) {
  if (node.type != YAML_SCALAR_NODE) refuse(node, "a text");
  return {reinterpret_cast<const char*>(node.data.scalar.value), node.data.scalar.length};
}

std::string kindNames() {
  std::string names;
  for (int kind = 0; kind < K::all_kinds; ++kind) {
    names += (kind > 0 ? ", " : "") + std::string(K::display(static_cast<Kind>(kind)));
  }
  return names;
}

std::string setKind(Rule& rule, std::string text) {
  if (text == "none") return {};
  std::replace(text.begin(), text.end(), '-', ' ');
  for (int kind = 0; kind < K::all_kinds; ++kind) {
    if (text != K::display(static_cast<Kind>(kind))) continue;
    rule.kind = static_cast<Kind>(kind);
    return {};
  }
  return "none or a kind: " + kindNames();
}

std::string setOnRequest(Rule& rule, std::string_view text) {
  rule.onRequest = text == "true";
  return text == "true" || text == "false" ? "" : "true or false";
}

std::string setName(Rule& rule, const std::string& text) {
  const bool fits = !text.empty() && text.find_first_of(" \t\n,") == std::string::npos;
  rule.name = text;
  return fits ? "" : "a name without blanks";
}

std::string setColumn(Rule& rule, const std::string& key, const std::string& text) {
  if (key == "name") return setName(rule, text);
  if (key == "pattern") return setPattern(rule, text);
  if (key == "kind") return setKind(rule, text);
  if (key == "label") return setLabel(rule, text);
  if (key == "end") return setEnd(rule, text);
  return setOnRequest(rule, text);
}

Rule ruleIn(Document& document, const yaml_node_t& node) {
  constexpr const char* kKeys = "name, pattern, kind, label, end or on-request";
  const std::set<std::string> keys{"name", "pattern", "kind", "label", "end", "on-request"};
  if (node.type != YAML_MAPPING_NODE) refuse(node, "a rule: name, pattern, kind, label and end");
  Rule rule;
  std::set<std::string> had;
  for (const yaml_node_pair_t* pair = node.data.mapping.pairs.start; pair < node.data.mapping.pairs.top; ++pair) {
    const yaml_node_t& keyNode = *document.node(pair->key);
    const std::string key = textOf(keyNode);
    if (keys.count(key) == 0) refuse(keyNode, std::string(kKeys) + ", not '" + key + "'");
    if (!had.insert(key).second) refuse(keyNode, "'" + key + "' once in a rule");
    const yaml_node_t& value = *document.node(pair->value);
    const std::string expected = setColumn(rule, key, textOf(value));
    if (!expected.empty()) refuse(value, key + ": " + expected);
  }
  for (const char* key : {"name", "pattern", "kind"}) {
    if (had.count(key) == 0) refuse(node, std::string("a rule with '") + key + "'");
  }
  return rule;
}

/// The list of rules: the document itself, or what is under `rules`.
const yaml_node_t& listIn(Document& document) {
  yaml_node_t* const root = document.root();
  if (root == nullptr) throw RulesError("line 1: expected a list under 'rules'");
  if (root->type == YAML_SEQUENCE_NODE) return *root;
  if (root->type == YAML_MAPPING_NODE) {
    for (const yaml_node_pair_t* pair = root->data.mapping.pairs.start; pair < root->data.mapping.pairs.top; ++pair) {
      const yaml_node_t& list = *document.node(pair->value);
      if (textOf(*document.node(pair->key)) == "rules" && list.type == YAML_SEQUENCE_NODE) return list;
    }
  }
  refuse(*root, "a list under 'rules'");
}

}  // namespace

std::vector<Rule> rulesIn(std::string_view yaml, const std::vector<Rule>& known) {
  Document document(yaml);
  std::set<std::string> names;
  for (const Rule& rule : known) names.insert(rule.name);
  std::vector<Rule> rules;
  const yaml_node_t& list = listIn(document);
  for (const yaml_node_item_t* item = list.data.sequence.items.start; item < list.data.sequence.items.top; ++item) {
    const yaml_node_t& node = *document.node(*item);
    rules.push_back(ruleIn(document, node));
    if (!names.insert(rules.back().name).second)
      refuse(node, "a name that no other rule has, not '" + rules.back().name + "'");
  }
  return rules;
}

}  // namespace kelvar_sources
