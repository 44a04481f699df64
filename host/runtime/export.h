#pragma once

/// Marks what a shared library offers; everything else keeps hidden visibility.
/// The mark is the same for building and using, because ELF needs no import form.
#define NUXML_API __attribute__((visibility("default")))

/// Takes a private operation out of what its class offers, unless a header calls it.
#define NUXML_LOCAL __attribute__((visibility("hidden")))
