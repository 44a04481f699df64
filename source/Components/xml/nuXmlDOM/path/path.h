#pragma once

#include <memory>
#include <string_view>

#include "nuXmlDOM/core/node.h"
#include "nuXmlDOM/core/nodeList.h"
#include "nuXmlDOM/core/selectOptions.h"
#include "nuXmlDOM/path/nodeSelection.h"

/// \file
/// Paths that are read once and selected by many times.

namespace nu {
struct PathProgram;
}

/// A path whose text has been read once, for selecting many times: what an application uses that
/// selects in a loop. It belongs to no document and never changes, so threads may share one.
///
/// Mistakes in the text throw when a selection gets to them, not here.
class NUXML_API TNuDOMPath {
public:
    explicit TNuDOMPath(std::u16string_view path, TNuDOMSelectOptions options = {});
    explicit TNuDOMPath(const TNuUtf8Text& path, TNuDOMSelectOptions options = {})
        : TNuDOMPath(path.view(), options) {}
    ~TNuDOMPath();

    /// The path as it was given.
    [[nodiscard]] NuXmlString Text() const;
    /// The options of every selection by this path.
    [[nodiscard]] TNuDOMSelectOptions Options() const noexcept;
    /// What the path asks for and the path language does not have, in a few words ("the path
    /// language has no function contains()"); empty without such a thing. A selection takes it for
    /// a name, or a value, that no node has, and finds nothing. Of a mistake, such as a bracket
    /// that stays open, it is what a selection that gets there throws.
    [[nodiscard]] NuXmlString Complaint() const;

    /// \name Selecting from an element or a document
    /// Other nodes throw ENuDomNotSupported.
    /// @{

    /// A new list of the nodes, in the order of selection; it does not follow the changes of the
    /// tree.
    [[nodiscard]] NuRef<TNuDOMNodeList> CreateNodeList(TNuDOMNode& context) const;
    /// The same for elements alone.
    [[nodiscard]] NuRef<TNuDOMElementList> CreateElementList(TNuDOMNode& context) const;
    /// The only node; null when there is none, or more than one.
    TNuDOMNode* SelectSingleNode(TNuDOMNode& context) const;
    /// The only element; null without one. Throws ENuDomException when there are more.
    TNuDOMElement* SelectSingleElement(TNuDOMNode& context) const;
    /// The same as the operations of nodes of these names.
    [[nodiscard]] TNuDOMSelection<TNuDOMElement> Select(TNuDOMNode& context) const;
    /// The same from a constant node; soCreate throws ENuDomNoModificationAllowed.
    [[nodiscard]] TNuDOMSelection<const TNuDOMElement> Select(const TNuDOMNode& context) const;
    /// The nodes of all kinds, attributes included.
    [[nodiscard]] TNuDOMSelection<TNuDOMNode> SelectNodes(TNuDOMNode& context) const;
    /// The same from a constant node.
    [[nodiscard]] TNuDOMSelection<const TNuDOMNode> SelectNodes(const TNuDOMNode& context) const;
    /// The first element; null without one.
    [[nodiscard]] TNuDOMElement* Find(TNuDOMNode& context) const;
    /// The same from a constant node.
    [[nodiscard]] const TNuDOMElement* Find(const TNuDOMNode& context) const;
    /// @}

private:
    friend class TNuDOMNode;
    [[nodiscard]] NUXML_LOCAL TNuDOMNode* first(TNuDOMNode& context, bool elementsOnly) const;

    std::shared_ptr<const nu::PathProgram> program_;
};
