# What a channel is to hostapd.
# shellcheck shell=sh disable=SC2034 # they are for who sources this

# describe_channel RADIO CHANNEL WIDTH: sets $frequency, $hostapd_lines and $switch_words. A width
# that the channel does not allow becomes 20 MHz.
describe_channel() {
    hostapd_lines=ieee80211n=1
    switch_words=ht
    if [ "$1" = 0 ]; then
        frequency=$((2407 + 5 * $2))
        return
    fi
    frequency=$((5000 + 5 * $2))
    case $2 in
    36 | 40 | 44 | 48) first=36 ;;
    52 | 56 | 60 | 64) first=52 ;;
    100 | 104 | 108 | 112) first=100 ;;
    116 | 120 | 124 | 128) first=116 ;;
    132 | 136 | 140 | 144) first=132 ;;
    149 | 153 | 157 | 161) first=149 ;;
    *) return ;;
    esac
    sign=+
    [ $((($2 - first) / 4 % 2)) = 0 ] || sign=-
    case $3 in
    HT80)
        hostapd_lines="$hostapd_lines
ieee80211ac=1
ht_capab=[HT40$sign]
vht_oper_chwidth=1
vht_oper_centr_freq_seg0_idx=$((first + 6))"
        switch_words="center_freq1=$((5000 + 5 * (first + 6))) sec_channel_offset=${sign}1 bandwidth=80 ht vht"
        ;;
    HT40*)
        hostapd_lines="$hostapd_lines
ht_capab=[HT40$sign]"
        switch_words="center_freq1=$((frequency + ${sign}10)) sec_channel_offset=${sign}1 bandwidth=40 ht"
        ;;
    esac
    switch_words=${switch_words#ht }
}
