# Rows from the sections of many captures, each as [KIND, ROW]. The files are named as gather.sh names them:
# ./CAPTURE/sections.jsonl

def capture: input_filename[1:] | rtrimstr("/sections.jsonl");

# Of a section.
def services:
  (select(.table == "sdt") | .service_infos[]
   | (first(.descriptors[] | select(.descriptor == "service_descriptor")) // {}) as $named
   | {capture: capture, service_id, name: $named.service_name, provider: $named.provider_name}),
  (select(.table == "atsc_tvct" or .table == "atsc_cvct") | .channels[]
   | {capture: capture, service_id: .program_number, name: .short_name, provider: null});

def events:
  (select(.table == "eit") | .service_id as $service | .event_infos[]
   | {capture: capture, service_id: $service, event_id, start: .start_time, duration,
      name: first((.descriptors[] | select(.descriptor == "short_event_descriptor") | .event_name), null)}),
  (select(.table == "atsc_eit") | .context_id as $source | .events[]
   | {capture: capture, source_id: $source, event_id, start: .start_time_meaning,
      duration: (.length_in_seconds | todate[11:19]), name: .title_text.strings[0].text});

# Of the numbers of sections, by capture and table.
def tables:
  to_entries[] | .key as $capture | .value | to_entries[]
  | {capture: $capture, table: .key, sections: .value};

# All in one go, as reading takes most of the time; null stands for the end.
foreach (inputs, null) as $section ({};
  if $section then .[capture][$section.table] += 1 else . end;
  if $section then $section | (services | ["services", .]), (events | ["events", .])
  else tables | ["tables", .] end)
