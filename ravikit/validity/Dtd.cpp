#include "ravikit/validity/Dtd.h"

#include "ravikit/text/Wording.h"
#include "ravikit/validity/DtdTables.h"
#include "ravikit/validity/Judge.h"

#include "WmlDtdText.h"

#include <string_view>
#include <utility>

namespace ravikit {
namespace {

/// A DTD for which the tables would hold more numbers than this is refused.
constexpr std::size_t mostCells = 1 << 24;

void nameElements(const ContentParticle& particle, NameTable& names) {
    if (particle.kind == ContentParticle::Kind::Name) {
        names.intern(particle.name);
    }
    for (const ContentParticle& child : particle.children) {
        nameElements(child, names);
    }
}

void nameAll(DtdTables& tables) {
    for (const ElementDeclaration& element : tables.declarations.elements) {
        tables.elementNames.intern(element.name);
    }
    for (const ElementDeclaration& element : tables.declarations.elements) {
        nameElements(element.model, tables.elementNames);
    }
    for (const AttributeDeclaration& attribute : tables.declarations.attributes) {
        tables.attributeNames.intern(attribute.name);
    }
}

std::vector<Symbol> mixedChildren(const ContentParticle& model, const NameTable& names) {
    std::vector<Symbol> children;
    for (const ContentParticle& child : model.children) {
        if (child.kind == ContentParticle::Kind::Name) {
            children.push_back(static_cast<Symbol>(names.find(child.name)));
        }
    }
    return children;
}

bool compileElement(ElementRules& rules, const ElementDeclaration& declaration,
                    const DtdTables& tables) {
    using Content = ElementDeclaration::Content;
    const NameTable& names = tables.elementNames;
    rules.declared = true;
    rules.holdsText = declaration.content == Content::Mixed || declaration.content == Content::Any;
    rules.holdsNothing = declaration.content == Content::Empty;
    rules.attributeIndex.assign(tables.attributeNames.size(), 0);
    if (declaration.content != Content::Children) {
        rules.content = freeContent(mixedChildren(declaration.model, names),
                                    declaration.content == Content::Any, names.size());
        return true;
    }
    auto content = compileContent(declaration.model, names);
    if (content) {
        rules.content = std::move(*content);
    }
    return content.has_value();
}

void addAttribute(ElementRules& rules, const AttributeDeclaration& declaration,
                  const NameTable& names) {
    using Default = AttributeDeclaration::Default;
    AttributeRules attribute;
    attribute.declaration = &declaration;
    attribute.required = declaration.defaultKind == Default::Required;
    attribute.plain = declaration.type == AttributeDeclaration::Type::CData &&
                      declaration.defaultKind != Default::Fixed;
    rules.required += attribute.required ? 1 : 0;
    rules.attributes.push_back(attribute);
    rules.attributeIndex[names.find(declaration.name)] =
        static_cast<std::uint16_t>(rules.attributes.size());
}

/// A document begins with an element that no other one holds. If each is held by another, any can
/// be the first.
void findRoots(DtdTables& tables) {
    std::vector<bool> held(tables.elements.size(), false);
    for (std::size_t outer = 0; outer < tables.elements.size(); ++outer) {
        for (std::size_t inner = 0; inner < held.size(); ++inner) {
            if (inner != outer && tables.elements[outer].declared &&
                tables.elements[outer].content.holds(static_cast<Symbol>(inner))) {
                held[inner] = true;
            }
        }
    }
    for (int pass = 0; pass < 2 && tables.roots.empty(); ++pass) {
        for (std::size_t symbol = 0; symbol < held.size(); ++symbol) {
            if (tables.elements[symbol].declared && (pass == 1 || !held[symbol])) {
                tables.roots.push_back(static_cast<Symbol>(symbol));
            }
        }
    }
}

/// Lets every text that is read with this DTD begin with its names.
void learnNames(DtdTables& tables) {
    auto names = std::make_shared<NameTable>();
    for (const NameTable* const table : {&tables.elementNames, &tables.attributeNames}) {
        for (NameTable::Id name = 0; name < table->size(); ++name) {
            names->intern(table->text(name));
        }
    }
    tables.meanings.learn(*names, tables);
    tables.declarations.names = std::move(names);
}

/// False if the tables grow too large.
bool compileTables(DtdTables& tables) {
    nameAll(tables);
    const NameTable& names = tables.elementNames;
    const std::size_t cellsEach = std::size_t{names.size()} + tables.attributeNames.size();
    std::size_t cells = cellsEach * tables.declarations.elements.size();
    if (cells > mostCells || names.size() >= ContentTable::dead ||
        tables.attributeNames.size() >= ContentTable::dead) {
        return false;
    }
    tables.elements.resize(names.size());
    for (NameTable::Id symbol = 0; symbol < names.size(); ++symbol) {
        tables.elements[symbol].name = names.text(symbol);
    }
    for (const ElementDeclaration& declaration : tables.declarations.elements) {
        ElementRules& rules = tables.elements[names.find(declaration.name)];
        const bool compiled = compileElement(rules, declaration, tables);
        cells += rules.content.next.size();
        if (!compiled || cells > mostCells) {
            return false;
        }
    }
    for (const AttributeDeclaration& declaration : tables.declarations.attributes) {
        const NameTable::Id element = names.find(declaration.element);
        if (element != NameTable::none && tables.elements[element].declared) {
            addAttribute(tables.elements[element], declaration, tables.attributeNames);
        }
    }
    findRoots(tables);
    learnNames(tables);
    tables.anything.holdsText = true;
    tables.anything.content = freeContent({}, true, names.size());
    tables.kindOfElement =
        names.find(u"wml") != NameTable::none ? u"WML element" : u"element of the DTD";
    return true;
}

} // namespace

void NameMeanings::learn(const NameTable& names, const DtdTables& dtd) {
    elements.reserve(names.size());
    attributes.reserve(names.size());
    for (auto name = static_cast<NameTable::Id>(elements.size()); name < names.size(); ++name) {
        const NameTable::Id element = dtd.elementNames.find(names.text(name));
        const bool declared = element != NameTable::none && dtd.elements[element].declared;
        elements.push_back(declared ? static_cast<Symbol>(element) : unknown);
        const NameTable::Id attribute = dtd.attributeNames.find(names.text(name));
        attributes.push_back(attribute == NameTable::none ? noAttribute
                                                          : static_cast<std::uint16_t>(attribute));
    }
}

struct Dtd::Tables : DtdTables {};

Dtd::Dtd(std::unique_ptr<const Tables> tables)
    : m_tables(std::move(tables)) {}

Dtd::~Dtd() = default;

std::shared_ptr<const Dtd> Dtd::compile(const std::u16string& text, Problems& problems) {
    const std::size_t before = problems.list().size();
    const auto end = static_cast<std::uint32_t>(text.size());
    auto tables = std::make_unique<Tables>();
    tables->declarations = readDeclarations(text, 0, end, false, problems);
    if (problems.list().size() != before) {
        return nullptr;
    }
    if (tables->declarations.elements.empty()) {
        problems.add(ProblemKind::BadDeclaration, 0, 0, u"the DTD declares no element");
        return nullptr;
    }
    if (!compileTables(*tables)) {
        problems.add(ProblemKind::TooLarge, 0, 0, u"the DTD is too large, or a content model is");
        return nullptr;
    }
    return std::shared_ptr<const Dtd>(new Dtd(std::move(tables)));
}

std::shared_ptr<const Dtd> Dtd::compileBuiltIn() {
    const std::string_view ascii = wmlDtdText;
    Problems none;
    return compile({ascii.begin(), ascii.end()}, none);
}

const Declarations& Dtd::declarations() const {
    return m_tables->declarations;
}

void Dtd::judge(const Tree& tree, Problems& problems) const {
    Judge(*m_tables, tree, problems).run();
}

} // namespace ravikit
