set(quillon_examples first programs texts services now_next tuning ca_systems map_changes xml atsc_guide channel_numbers
    statistics json)
