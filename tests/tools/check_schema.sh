#!/usr/bin/env bash
# Holds the schemas to the sample files and to `check`: what one refuses, so does the other.
#   check_schema.sh TOOL SAMPLE_INSTALLATION
set -u
tool=$(realpath "$1")
sample=$(realpath "$2")/Types
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 2
failed=0
fail() { echo "check_schema: $*" >&2; failed=1; }

declare -A kinds=([Vorlan]="VorlanTyp 4" [Vorlan-1]="VorlanTyp 4" [Vorlan-2]="VorlanTyp 4" [StdXcvr]="StdXcvr 3"
                  [UserXcvr]="StdXcvr 3" [spidData]="SPIDData 2" [KestruneUI]="KestruneUI 1")
for file in "$sample"/*.xml; do
  read -r kind newest <<<"${kinds[$(basename "$file" .xml)]}"
  for version in $(seq "$newest"); do
    "$tool" schema "${kind,,}" --to-version "$version" >"$kind-$version.xsd" || fail "no schema of $kind $version"
    converted=$kind-$version.xml
    if [ "$version" = "$newest" ]; then
      cp "$file" "$converted"
    else
      "$tool" convert "$file" "$converted" --to-version "$version" --yes --force >/dev/null || fail "$file: no version $version"
      xmllint --noout --schema "$kind-$version.xsd" "$file" 2>/dev/null && fail "version $version has the later members"
    fi
    xmllint --noout --schema "$kind-$version.xsd" "$converted" >seen 2>&1 || fail "$file, version $version: $(head -3 seen)"
  done
  "$tool" schema "$kind" | cmp - "$kind-$newest.xsd"
done
grep -c '<xs:documentation></xs:documentation>' ./*.xsd | grep -v ':0$' && fail "a member without a sentence"

# One substitution in a sample file, and whether it is sound then.
while IFS='|' read -r file from to verdict; do
  read -r kind newest <<<"${kinds[$file]}"
  sed "0,/$from/s//$to/" "$sample/$file.xml" >changed.xml
  cmp -s changed.xml "$sample/$file.xml" && fail "$file has no '$from'"
  xmllint --noout --schema "$kind-$newest.xsd" changed.xml >seen 2>&1 && schema=sound || schema=faulty
  "$tool" check changed.xml >found 2>&1 && check=sound || check=faulty
  [ "$schema $check" = "$verdict $verdict" ] ||
    fail "$file: '$from' as '$to' is $verdict; schema: $schema, check: $check: $(head -2 seen found)"
done <<'END'
Vorlan|<ROMend>0x1FFF<.ROMend>|<RomEnd>0x1FFF<\/RomEnd>|faulty
Vorlan|<ROMend>0x1FFF|<ROMend>0x1FFZ|faulty
Vorlan|<ROMend>0x1FFF|<ROMend>7FFF|faulty
Vorlan|<ROMend>0x1FFF|<ROMend>0x80000000|faulty
Vorlan|<ROMend>0x1FFF|<ROMend> 0x0007FFF|sound
Vorlan|<ROMend>0x1FFF|<ROMend>0x1FFF |faulty
Vorlan|<ModelNum>010|<ModelNum>Unassigned|faulty
Vorlan|<ModelNum>010|<ModelNum>08|faulty
Vorlan|ExternalMemory="FALSE"|ExternalMemory="0"|faulty
Vorlan|ExternalMemory="FALSE"|ExternalMemory="False"|sound
Vorlan|ExternalMemory="FALSE"|externalMemory="FALSE"|faulty
Vorlan|<Uart>True|<Uart>y E s|sound
Vorlan|<Uart>True|<Uart>on|faulty
Vorlan|<CycleDivider>2.0|<CycleDivider>2,0|faulty
Vorlan|<CycleDivider>2.0|<CycleDivider>.2e1|sound
Vorlan|<ClockingScheme Id="2"|<ClockingScheme Id="1"|faulty
Vorlan|<ClockingScheme Id="2"|<ClockingScheme|faulty
Vorlan|<ClockingScheme Id="2"|<ClockingScheme Id=""|faulty
Vorlan|<ImageName>V1802<.ImageName>|<ImageName>V1802<\/ImageName><ImageName>A<\/ImageName>|faulty
Vorlan|<Description>Lowest rate|<!-- a remark --><Description>Lowest rate|sound
StdXcvr|<xcvr_gp_data>0x|<xcvr_gp_data>|faulty
StdXcvr|<SchedulerMode>[0-9]*|<SchedulerMode>Unassigned|sound
spidData| Number="1\.1"| Number="1-1"|faulty
spidData| Number="1\.1"| Number="65535.65535"|sound
KestruneUI|<UIInfo>|<UiInfo>|faulty
END
exit $failed
