#pragma once

#include <concepts>
#include <cstddef>

#include "nuXmlParser/chars.h"
#include "nuXmlParser/markupBlock.h"

namespace nu {

/// What a scanner needs of a source to go step by step: TNuXmlBaseParser's operations as functions
/// that are inlined, and runs, each of which does what a loop over these would do.
template <class Source>
concept StepSource = requires(Source& source, const Source& known, NuXmlChar unit) {
    // One character at a time; the one delivered last is the current one.
    { source.ReadXmlChar() } -> std::same_as<PNuXmlChar>;
    { source.ReadRawChar() } -> std::same_as<PNuXmlChar>;
    { source.PeekXmlChar() } -> std::same_as<PNuXmlChar>;
    { known.current() } -> std::same_as<NuXmlChar>;
    { known.hasEnded() } -> std::same_as<bool>;
    source.ResetBuffer();

    // Runs.
    source.template readUntil<StopSet::Less>();
    source.copyUntil(unit, [](PNuXmlChar, std::size_t) {});
    { source.peeksAt(unit, unit) } -> std::same_as<bool>;

    // The text from some character to the current one.
    source.keepFromHere();
    { known.keptPlace() } -> std::same_as<PNuXmlChar>;
    { known.currentPlace() } -> std::same_as<PNuXmlChar>;
};

/// What it needs for its hot loop: the text from the kept place on can be looked at by pointer, and
/// a read may move to any place of it. It moves when more is decoded.
template <class Source>
concept WindowSource = StepSource<Source> &&
    requires(Source& source, const Source& known, PNuXmlChar place, bool& isFree) {
    { source.extendWindow() } -> std::same_as<bool>;
    { known.LastPtr() } -> std::same_as<PNuXmlChar>;
    { source.template findFrom<StopSet::Less>(place) } -> std::same_as<PNuXmlChar>;
    {
        source.template findFrom<StopSet::Quote, StopSet::Escaped>(place, isFree)
        } -> std::same_as<PNuXmlChar>;
    source.moveTo(place);
    source.countRaw(place);
    source.countPeek();
    source.releaseBefore(place);
};

/// A source says itself which of both it is.
template <class Source>
concept CharacterSource = StepSource<Source> &&(!Source::hasTextAtHand || WindowSource<Source>);

} // namespace nu
