#!/usr/bin/perl
# Writes the checksum of a PE file's optional header, which the linker leaves 0, as the platform's
# documentation of the image format tells it (CheckSumMappedFile): the ones' complement sum of the
# file's 16-bit words with the field taken as 0, and the file's length added.
#
#   set_pe_checksum.pl FILE
use strict;
use warnings;

my ($name) = @ARGV;
die "usage: set_pe_checksum.pl FILE\n" unless @ARGV == 1;
open my $file, '+<:raw', $name or die "set_pe_checksum: $name: $!\n";
my $length = -s $file;
die "set_pe_checksum: $name is no PE file\n" if $length < 0x100;

sub at {    # at(OFFSET, LENGTH): bytes of the file
    seek $file, $_[0], 0 or die "set_pe_checksum: $name: $!\n";
    (read($file, my $bytes, $_[1]) // 0) == $_[1] or die "set_pe_checksum: $name ends too early\n";
    return $bytes;
}
my $header = unpack 'V', at(0x3c, 4);
die "set_pe_checksum: $name is no PE file\n" unless at($header, 4) eq "PE\0\0";
my $field = $header + 24 + 64;    # behind signature and file header, in the optional header

seek $file, $field, 0 or die;
print {$file} pack('V', 0) or die "set_pe_checksum: $name: $!\n";
seek $file, 0, 0 or die;
my $sum = 0;
while (read $file, my $bytes, 1 << 20) {
    $bytes .= "\0" if length($bytes) % 2;    # only the last piece can be odd
    $sum += unpack '%64v*', $bytes;
}
$sum = ($sum & 0xffff) + ($sum >> 16) while $sum >> 16;
seek $file, $field, 0 or die;
print {$file} pack('V', $sum + $length) or die "set_pe_checksum: $name: $!\n";
close $file or die "set_pe_checksum: $name: $!\n";
