#!/usr/bin/env bash
# Runs a command in a time zone, with what this computer's own calendar says of that zone in the environment.
#
#   in_zone.sh ZONE COMMAND [ARG...]
#
#   TZ              the zone
#   ORV_ZONE_NOW    its offset from UTC at this moment, in minutes east
#   ORV_ZONE_TIMES  instants and the local times that belong to them: "UTC=LOCAL UTC=LOCAL ..."
set -euo pipefail

export TZ=$1
shift

# Midwinter and midsummer, then the seconds about the changes in New York, Berlin and Auckland.
instants=(
    2021-01-15T12:00:00 2021-07-15T12:00:00 2020-02-29T23:30:00 2026-12-31T23:59:59
    2021-03-14T06:59:59 2021-03-14T07:00:00 2021-11-07T05:59:59 2021-11-07T06:00:00
    2021-03-28T00:59:59 2021-03-28T01:00:00 2021-10-31T00:59:59 2021-10-31T01:00:00
    2021-04-03T13:59:59 2021-04-03T14:00:00 2021-09-25T13:59:59 2021-09-25T14:00:00
)
ORV_ZONE_TIMES=
for instant in "${instants[@]}"; do
    ORV_ZONE_TIMES+="${instant}Z=$(date -d "${instant}Z" +%Y-%m-%dT%H:%M:%S) "
done

offset=$(date +%z)
minutes=$((10#${offset:1:2} * 60 + 10#${offset:3:2}))
ORV_ZONE_NOW=${offset:0:1}$minutes
export ORV_ZONE_NOW ORV_ZONE_TIMES
exec "$@"
