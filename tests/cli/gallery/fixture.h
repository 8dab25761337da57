// Pictures for galleries, and pages taken apart.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/cli/support.h"

namespace ombrix::test {

struct Element {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text;  ///< of its children too

    bool Has(const std::string& attribute, const std::string& value) const {
        const auto found = attributes.find(attribute);
        return found != attributes.end() && found->second == value;
    }
};

/// The elements of a page, in order. The test fails when the page is not well-formed.
class Page {
  public:
    explicit Page(const std::string& html);

    std::vector<Element> All(const std::string& name) const;
    /// By CSS class.
    std::vector<std::string> Texts(const std::string& cssClass) const;
    const std::vector<Element>& Elements() const { return elements_; }

  private:
    std::vector<Element> elements_;
};

/// The bytes behind "data:...;base64,".
std::string BytesOfDataUri(const std::string& uri);

class GalleryFixture : public CommandTest {
  protected:
    /// Writes "photo.jpg" and the smaller "texture.png", with many tones and colours.
    GalleryFixture();

    static vips::VImage Scene(int width, int height, double seed);
};

}  // namespace ombrix::test
