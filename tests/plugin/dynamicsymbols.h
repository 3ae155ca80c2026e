#ifndef TESTS_PLUGIN_DYNAMICSYMBOLS_H
#define TESTS_PLUGIN_DYNAMICSYMBOLS_H

#include <cstddef>
#include <string>
#include <vector>

struct DynamicSymbol {
    std::string name; // as the linker has it
    char kind;        // nm's letter
    std::size_t size; // bytes; 0 for what has none
};

/** What nm lists of @p file's dynamic symbol table. @{ */
std::vector<DynamicSymbol> definedSymbols(const char* file);
std::vector<DynamicSymbol> undefinedSymbols(const char* file);
/** @} */

/** True for a symbol of a panel service's class, or of a function that belongs to
 *  the services. */
bool isOfPanelService(const std::string& name);

#endif
