#pragma once

#include "apps/quillon/console.h"
#include "apps/quillon/options.h"

namespace quillon::app {

// Each gives an exit code; results go to standard output, messages to standard error. Throws Failure.
Exit epg(const Options& options, Console& console);
Exit html_page(const Options& options, Console& console);
Exit json(const Options& options, Console& console);
Exit load_xml(const Options& options, Console& console);
Exit names(const Options& options, Console& console);
Exit pids(const Options& options, Console& console);
Exit report(const Options& options, Console& console);
Exit save_xml(const Options& options, Console& console);
Exit sections(const Options& options, Console& console);
Exit services(const Options& options, Console& console);
Exit show(const Options& options, Console& console);
Exit summary(const Options& options, Console& console);
Exit tables(const Options& options, Console& console);
Exit watch(const Options& options, Console& console);

}  // namespace quillon::app
