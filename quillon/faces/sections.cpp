// The faces of the section headers.

#include <quillon/faces/internal/load.h>
#include <quillon/faces/internal/save.h>
#include <quillon/faces/internal/walk.h>
#include <quillon/sections/psi_base.h>

namespace quillon {

namespace {

constexpr const char* kNoAttributes = "failed to get attribute map";

}  // namespace

template <class V, class S>
void PsiTableBase::describe(V& v, S& s) {
  if constexpr (V::walk)
    v.coded("table_id", s.table_id_, s.get_table_id_text());
  else
    v.head("table_id", s.table_id_);
  v.head("syntax_indicator", s.syntax_indicator_);
  v.head("section_length", s.section_length_);
  v.head("context_id", s.context_id_);
  v.head("version_number", s.version_number_);
  v.head("section_number", s.section_number_);
  v.head("last_section_number", s.last_section_number_);
  v.head("current_next_indicator", s.current_next_indicator_);
  v.head("crc32", s.crc_);
}

template <class V, class S>
void PsiBase::describe(V& v, S& s) {
  if constexpr (V::walk)
    v.coded("table_id", s.table_id_, s.get_table_id_text());
  else
    v.head("table_id", s.table_id_);
  v.head("section_length", s.section_length_);
}

bool PsiTableBase::SaveSection(void* document, void* node) const {
  faces::Save v(document, node);
  describe(v, *this);
  return v.ok() && _save_section(document, node);
}

void PsiTableBase::ParseDOM(void* node) {
  faces::Load v(node, kNoAttributes);
  describe(v, *this);
  _parse(node);
  parsed_ = true;
}

void PsiTableBase::_walk_head(FieldSink& sink) const {
  faces::Walk v(sink, Reading::kept);
  describe(v, *this);
}

bool PsiBase::SaveSection(void* document, void* node) const {
  faces::Save v(document, node);
  describe(v, *this);
  return v.ok() && _save_section(document, node);
}

void PsiBase::ParseDOM(void* node) {
  faces::Load v(node, kNoAttributes);
  describe(v, *this);
  _parse(node);
  parsed_ = true;
}

void PsiBase::_walk_head(FieldSink& sink) const {
  faces::Walk v(sink, Reading::kept);
  describe(v, *this);
}

}  // namespace quillon
