#pragma once

#include <quillon/platform/api.h>

// The tables: first and last table id, the streams in which these mean it, class, and the element of its
// documents.
#define QUILLON_TABLE_KINDS(X)               \
  X(0x00, 0x00, any, Pat, "pat")             \
  X(0x01, 0x01, any, Cat, "cat")             \
  X(0x02, 0x02, dvb, PmtDVB, "pmt")          \
  X(0x02, 0x02, atsc, PmtATSC, "atsc_pmt")   \
  X(0x3B, 0x3C, any, DsmCC, "dsmcc")         \
  X(0x40, 0x41, any, Nit, "nit")             \
  X(0x42, 0x42, any, Sdt, "sdt")             \
  X(0x46, 0x46, any, Sdt, "sdt")             \
  X(0x4A, 0x4A, any, Bat, "bat")             \
  X(0x4C, 0x4C, any, Int, "int")             \
  X(0x4E, 0x6F, any, Eit, "eit")             \
  X(0x70, 0x70, any, Tdt, "tdt")             \
  X(0x71, 0x71, any, Rst, "rst")             \
  X(0x73, 0x73, any, Tot, "tot")             \
  X(0x74, 0x74, any, Ait, "ait")             \
  X(0xC7, 0xC7, atsc, AtscMGT, "atsc_mgt")   \
  X(0xC8, 0xC8, atsc, AtscTVCT, "atsc_tvct") \
  X(0xC9, 0xC9, atsc, AtscCVCT, "atsc_cvct") \
  X(0xCA, 0xCA, atsc, AtscRRT, "atsc_rrt")   \
  X(0xCB, 0xCB, atsc, AtscEIT, "atsc_eit")   \
  X(0xCC, 0xCC, atsc, AtscETT, "atsc_ett")   \
  X(0xCD, 0xCD, atsc, AtscSTT, "atsc_stt")   \
  X(0xD3, 0xD3, atsc, AtscDCCT, "atsc_dcct") \
  X(0xD4, 0xD4, atsc, AtscDCCSCT, "atsc_dccsct")
