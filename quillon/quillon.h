#pragma once

// Everything that an application needs.

#include <quillon/demux/sources.h>
#include <quillon/descriptors/dvb_classes.h>
#include <quillon/sections/log.h>
#include <quillon/sections/pat.h>
#include <quillon/tables/bat.h>
#include <quillon/tables/cat.h>
#include <quillon/tables/eit.h>
#include <quillon/tables/nit.h>
#include <quillon/tables/pmt.h>
#include <quillon/tables/rst.h>
#include <quillon/tables/sdt.h>
#include <quillon/tables/tdt.h>
#include <quillon/tables/tot.h>
#include <quillon/xml/document.h>
