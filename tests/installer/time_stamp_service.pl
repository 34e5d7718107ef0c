#!/usr/bin/perl
# A time-stamping service for tests, on the loopback address: answers each request by "openssl ts".
#
#   time_stamp_service.pl CONFIG FOLDER     writes its port into FOLDER/port and serves until it is ended
use strict;
use warnings;
use IO::Socket::INET;

my ($config, $folder) = @ARGV;
my $server = IO::Socket::INET->new(LocalAddr => '127.0.0.1', LocalPort => 0, Listen => 5, ReuseAddr => 1)
    or die "no port: $!";
open(my $port, '>', "$folder/port.new") or die $!;
print $port $server->sockport;
close $port;
rename "$folder/port.new", "$folder/port" or die $!;
while (my $client = $server->accept) {
    my $length = 0;
    while (my $line = <$client>) {
        $length = $1 if $line =~ /^Content-Length:\s*(\d+)/i;
        print $client "HTTP/1.1 100 Continue\r\n\r\n" if $line =~ /^Expect:/i;
        last if $line =~ /^\r?\n$/;
    }
    read($client, my $query, $length);
    open(my $file, '>:raw', "$folder/query") or die $!;
    print $file $query;
    close $file;
    system('openssl', 'ts', '-reply', '-config', $config, '-queryfile', "$folder/query", '-out', "$folder/reply") == 0
        or die 'openssl ts failed';
    open($file, '<:raw', "$folder/reply") or die $!;
    my $reply = do { local $/; <$file> };
    close $file;
    print $client "HTTP/1.1 200 OK\r\nContent-Type: application/timestamp-reply\r\nContent-Length: "
        . length($reply) . "\r\nConnection: close\r\n\r\n" . $reply;
    close $client;
}
