#pragma once

#include <memory>

#include <CLI/CLI.hpp>

namespace sandbox {

/// The form of all help: text in lines of at most `width` columns, an option's words beside its
/// name where there is room. Verbs take it over from the command that they are added to.
std::shared_ptr<CLI::Formatter> helpForm(std::size_t width);

} // namespace sandbox
