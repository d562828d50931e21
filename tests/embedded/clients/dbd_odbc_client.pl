# What a Perl program does with the embedded database through DBD::ODBC; prints what it sees. Argument: the file.
use strict;
use warnings;
use DBI;

my %quiet = (RaiseError => 0, PrintError => 0, AutoCommit => 1);
my $dbh = DBI->connect("dbi:ODBC:Driver={SQL Server};Create=yes;Database=$ARGV[0]", 'sa', '', \%quiet)
    or die DBI->errstr;
sub show { print join(' | ', map { defined $_ ? $_ : 'NULL' } @$_), "\n" for @{$_[0]} }

$dbh->do("CREATE TABLE p (id int NOT NULL PRIMARY KEY, name varchar(50) NULL, at datetime)") or die $dbh->errstr;
my $insert = $dbh->prepare("INSERT INTO p (id, name, at) VALUES (?, ?, ?)") or die $dbh->errstr;
$insert->execute($_, "o'name $_", '2003-02-11 08:15:30') or die $insert->errstr for 1 .. 3;
$insert->execute(4, undef, undef) or die $insert->errstr;
show($dbh->selectall_arrayref("SELECT id, name, at FROM p ORDER BY id DESC"));
show($dbh->selectall_arrayref("SELECT 'x' + name FROM p WHERE id = ?", undef, 3));
for my $sql ("SELECT nothing FROM p", "INSERT INTO p (id) VALUES (1)", "SELECT FROM") {
    print "$sql -> ", $dbh->do($sql) ? 'no error' : $dbh->state, "\n";
}
print "updated ", $dbh->do("UPDATE p SET name = 'z' WHERE id > 2"), "\n";
print "updated ", $dbh->do("UPDATE p SET name = 'z' WHERE id > 200"), "\n";
$dbh->{AutoCommit} = 0;
$dbh->do("DELETE FROM p");
$dbh->rollback;
$dbh->{AutoCommit} = 1;
print "after rollback ", $dbh->selectrow_array("SELECT COUNT(*) FROM p"), "\n";
my $columns = $dbh->column_info(undef, undef, 'p', '%');
while (my $column = $columns->fetchrow_hashref) {
    print "$column->{COLUMN_NAME} $column->{TYPE_NAME} $column->{COLUMN_SIZE}\n";
}
print "key ", join(',', $dbh->primary_key(undef, undef, 'p')), "\n";
$dbh->disconnect;
