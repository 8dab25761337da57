#include "host/declaration.h"

#include <charconv>

#include "ombrix/error.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::host {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Reads a declaration from left to right.
class Reader {
  public:
    explicit Reader(std::string_view text) : text_(text) { SkipBlanks(); }

    bool AtEnd() const { return rest_ == text_.size(); }

    /// Takes the character if it comes next.
    bool Take(char c) {
        if (AtEnd() || text_[rest_] != c) return false;
        ++rest_;
        SkipBlanks();
        return true;
    }

    /// Takes the word if it comes next.
    bool TakeWord(std::string_view word) {
        if (!text::SameName(PeekName(), word)) return false;
        Advance(word.size());
        return true;
    }

    std::string TakeName(std::string_view what) {
        const std::string_view name = PeekName();
        if (name.empty()) Fail(what);
        Advance(name.size());
        return std::string(name);
    }

    std::int64_t TakeInteger() {
        std::int64_t value = 0;
        const char* first = text_.data() + rest_;
        const char* last = text_.data() + text_.size();
        if (last - first > 1 && first[0] == '+' && IsDigit(first[1])) ++first;
        const auto [end, status] = std::from_chars(first, last, value);
        if (status != std::errc{}) Fail("an Integer");
        Advance(static_cast<std::size_t>(end - text_.data()) - rest_);
        return value;
    }

    void ExpectEnd() {
        if (!AtEnd()) Fail("its end");
    }

    [[noreturn]] void Fail(std::string_view expected) const {
        const std::string found = AtEnd() ? "its end" : text::Quoted(text_.substr(rest_));
        throw Error("the declaration has " + found + " where " + std::string(expected) + " should be");
    }

  private:
    std::string_view PeekName() const {
        std::size_t end = rest_;
        if (!AtEnd() && text::StartsName(text_[end])) {
            while (end < text_.size() && text::ContinuesName(text_[end])) ++end;
        }
        return text_.substr(rest_, end - rest_);
    }

    void Advance(std::size_t count) {
        rest_ += count;
        SkipBlanks();
    }

    void SkipBlanks() {
        while (!AtEnd() && IsBlank(text_[rest_])) ++rest_;
    }

    std::string_view text_;
    std::size_t rest_ = 0;
};

ParameterInfo ReadParameter(Reader& reader, bool& assigns) {
    ParameterInfo parameter;
    parameter.name = reader.TakeName("a parameter's name");
    bool typeFollows = reader.TakeWord("as");
    // Only a word of the language where a name follows, otherwise a name itself.
    if (!typeFollows && text::SameName(parameter.name, "assigns")) {
        assigns = true;
        parameter.name = reader.TakeName("a parameter's name");
        typeFollows = reader.TakeWord("as");
    }
    if (!typeFollows) reader.Fail("\"as\"");
    parameter.type = reader.TakeName("a type");
    parameter.required = KindOf(parameter.type) != Kind::Object;
    return parameter;
}

}  // namespace

Kind KindOf(std::string_view type) {
    if (text::SameName(type, "Integer")) return Kind::Integer;
    if (text::SameName(type, "Boolean")) return Kind::Boolean;
    if (text::SameName(type, "Double")) return Kind::Double;
    return Kind::Object;
}

std::size_t SizeOf(Kind kind) { return kind == Kind::Boolean ? 1 : 8; }

std::string MethodDeclaration::ParameterSignature() const {
    std::string signature = name + "(";
    for (const ParameterInfo& parameter : parameters) {
        const bool last = &parameter == &parameters.back();
        if (last && assigns) signature += "assigns ";
        signature += parameter.type;
        if (!last) signature += ",";
    }
    return text::LowerCase(signature + ")");
}

std::string MethodDeclaration::Signature() const {
    return ParameterSignature() + (resultType ? " as " + text::LowerCase(*resultType) : "");
}

MethodDeclaration ParseMethod(std::string_view text) {
    Reader reader(text);
    MethodDeclaration method;
    method.name = reader.TakeName("a method's name");
    if (reader.Take('(') && !reader.Take(')')) {
        do {
            if (method.assigns) reader.Fail("no parameter, since \"assigns\" goes with the last one,");
            method.parameters.push_back(ReadParameter(reader, method.assigns));
        } while (reader.Take(','));
        if (!reader.Take(')')) reader.Fail("\",\" or \")\"");
    }
    if (reader.TakeWord("as")) method.resultType = reader.TakeName("a type");
    reader.ExpectEnd();
    return method;
}

ConstantInfo ParseConstant(std::string_view text) {
    Reader reader(text);
    ConstantInfo constant;
    constant.declaration = text;
    constant.name = reader.TakeName("a constant's name");
    if (!reader.Take('=')) reader.Fail("\"=\"");
    constant.value = reader.TakeInteger();
    reader.ExpectEnd();
    return constant;
}

}  // namespace ombrix::host
